#pragma once

#include <algorithm>
#include <string_view>

namespace velmor {

// Kinds of single UTF-16 code units. Letters and digits are those of ASCII.

constexpr bool isDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}
constexpr bool isLetter(char16_t unit) noexcept {
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return lower >= u'a' && lower <= u'z';
}
constexpr bool isLineEnd(char16_t unit) noexcept {
    return unit == u'\r' || unit == u'\n';
}
// A blank, a tab or a line end.
constexpr bool isWhiteSpace(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\t' || isLineEnd(unit);
}
// The first and the second unit of a pair that makes one character.
constexpr bool isHighSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool isLowSurrogate(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}
// The value of a hexadecimal digit in either case; -1 for any other unit.
constexpr int hexadecimalDigit(char16_t unit) noexcept {
    if (isDigit(unit)) return unit - u'0';
    const auto lower = static_cast<char16_t>(unit | 0x20);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

// The text without these characters at its start and at its end.
constexpr std::u16string_view trimmed(std::u16string_view text, std::u16string_view characters) noexcept {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

}  // namespace velmor
