#include "properties/EntryName.h"

#include "text/Characters.h"

namespace velmor {
namespace {

constexpr std::u16string_view colon = u":", escapedColon = u"!@";

std::u16string replaced(std::u16string_view text, std::u16string_view sought, std::u16string_view replacement) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t from = 0;;) {
        const std::size_t at = text.find(sought, from);
        result += text.substr(from, at - from);
        if (at == text.npos) return result;
        result += replacement;
        from = at + sought.size();
    }
}

}  // namespace

std::u16string_view withoutLeadingBlanks(std::u16string_view name) {
    while (!name.empty() && isWhiteSpace(name.front())) name.remove_prefix(1);
    return name;
}

std::u16string cleanName(std::u16string_view name) {
    name = withoutLeadingBlanks(name);
    if (name.starts_with(u'!')) {
        if (name.size() > 2 && name[2] == u'!') {
            name.remove_prefix(3);
        } else if (name.size() > 3 && name[3] == u'!') {
            name.remove_prefix(4);
        }
    }
    return replaced(name, escapedColon, colon);
}

// A type prefix, which readers drop, keeps them from dropping the beginning of the name.
void appendName(std::u16string& target, std::u16string_view name) {
    if (name.find(colon) == name.npos) {
        target += name;
        return;
    }
    const std::u16string escaped = replaced(name, colon, escapedColon);
    if (cleanName(escaped) != name) target += u"!s!";
    target += escaped;
}

}  // namespace velmor
