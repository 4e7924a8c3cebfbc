#include "rtf/merge/ColourTable.h"

#include <algorithm>

#include "rtf/read/BraceScanner.h"

namespace velmor {
namespace {

constexpr std::u16string_view opening = u"{\\colortbl";
constexpr std::size_t nowhere = std::u16string_view::npos;

std::u16string withoutWhiteSpace(std::u16string_view text) {
    std::u16string result;
    for (const char16_t unit : text) {
        if (!isWhiteSpace(unit)) result += unit;
    }
    return result;
}

}  // namespace

std::optional<TextRange> ColourTable::find(std::u16string_view text, bool tolerant) noexcept {
    BinaryData data(text);
    for (std::size_t at = 0, next; (at = text.find(opening, at)) != nowhere; at = next) {
        const std::size_t behindData = tolerant ? data.behind(at) : at;
        next = std::max(behindData, at + 1);
        if (behindData != at || isEscaped(text, at)) continue;
        // No brace belongs to a colour, so the first one ends a damaged table, too.
        const std::size_t end = text.find(u'}', at);
        if (end == nowhere) return std::nullopt;
        return TextRange{at, end + 1};
    }
    return std::nullopt;
}

std::int32_t ColourTable::numberOf(std::u16string_view definition) {
    const auto next = static_cast<std::int32_t>(numbers_.size()) + 1;
    const auto [known, isNew] =
        numbers_.emplace(tolerant_ ? withoutWhiteSpace(definition) : std::u16string(definition), next);
    if (isNew) definitions_ += known->first;
    return known->second;
}

void ColourTable::add(std::u16string_view table, NumberMap& numbers) {
    std::size_t at = skipWhiteSpace(table, opening.size());
    const bool hasAutomatic = standsAt(table, at, u";");
    std::int32_t index = hasAutomatic ? 1 : 0;
    if (hasAutomatic) at = skipWhiteSpace(table, at + 1);
    for (;; ++index) {
        const std::size_t end = table.find(u';', at);
        // A group in the table is damage; its braces must not get into the merged one.
        if (end == nowhere || table.substr(at, end - at).find_first_of(u"{}") != nowhere) return;
        numbers.set(decimal(index), numberOf(table.substr(at, end + 1 - at)));
        at = end + 1;
        if (!tolerant_ && table[at] != u'\\') return;
    }
}

std::u16string ColourTable::text() const {
    constexpr std::u16string_view defaults =
        u"\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;\\red0\\green255\\blue0;"
        u"\\red0\\green0\\blue255;";
    std::u16string result(opening);
    result.append(u";").append(definitions_.empty() ? defaults : std::u16string_view(definitions_)).append(u"}");
    return result;
}

}  // namespace velmor
