// The commonest tag by far is answered without building its elements, where the outcome is the same.

#include "core/BuiltInCommands.h"
#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::u16string_view kPropertyTag = u"TAG>PROPERTY:";

bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}
bool isLetter(char16_t unit) noexcept {
    return (unit | 0x20) >= u'a' && (unit | 0x20) <= u'z';
}

bool isPropertyTag(std::u16string_view name) noexcept {
    return name.size() >= kPropertyTag.size() && equalIgnoringCase(name.substr(0, kPropertyTag.size()), kPropertyTag);
}

// Names that the reader takes as they stand (but for their case).
bool isPlainName(std::u16string_view name) noexcept {
    return !name.empty() && name.front() > u' ' && name.find(u'!') == std::u16string_view::npos;
}

// A long whose text is the very same.
bool isPlainNumber(std::u16string_view value) noexcept {
    if (value.empty() || value.size() > 9 || (value.front() == u'0' && value.size() > 1)) return false;
    for (const char16_t unit : value) {
        if (!isDigit(unit)) return false;
    }
    return true;
}

// A text that begins like no number, marker or quoted value, and ends like no typed number.
bool isPlainText(std::u16string_view value) noexcept {
    if (value.empty()) return true;
    if (!isLetter(value.front()) || equalIgnoringCase(value.substr(0, 3), u"NUL")) return false;
    const char16_t last = value.back();
    return isLetter(last) || isDigit(last);
}

}  // namespace

bool BuiltInCommands::appendProperty(std::u16string_view psName, const TagContext& context, std::u16string& target) {
    if (!isPropertyTag(psName)) return false;
    const std::u16string_view rest = psName.substr(kPropertyTag.size());
    const std::size_t end = std::min(rest.find(kElementSeparator), rest.size());
    const std::u16string_view entry = rest.substr(0, end);
    if (entry.find(u'<') != std::u16string_view::npos) return false;
    const std::size_t equals = entry.find(u'=');
    const std::u16string_view name = entry.substr(0, equals);
    if (!isPlainName(name)) return false;
    const bool bare = equals == std::u16string_view::npos;
    const std::u16string_view value = bare ? u"0" : entry.substr(equals + 1);
    if (value.size() == 1 && end < rest.size()) {
        // "X:\" and "X:/" are the beginning of a path.
        const char16_t next = end + 1 < rest.size() ? rest[end + 1] : u' ';
        if (next == u'\\' || next == u'/') return false;
    }
    if (!isPlainNumber(value) && !isPlainText(value)) return false;
    if (!context.properties.own()) return false;
    if (!context.properties.appendText(name, target)) target += value;
    return true;
}

}  // namespace velmor
