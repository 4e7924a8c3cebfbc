#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/read/RtfScanner.h"

namespace velmor {

constexpr bool isDecimalDigit(char16_t unit) noexcept {
    return unit >= u'0' && unit <= u'9';
}

// A control word as it stands in a text. Indices are 0-based.
struct ControlWord {
    std::size_t begin = 0;        // of its backslash
    std::u16string_view letters;  // behind the backslash
    std::u16string_view number;   // digits, with a "-" in front or not; may be empty
    std::size_t end = 0;          // behind the number; a blank that ends the word is not part of it

    std::size_t numberBegin() const noexcept { return end - number.size(); }
};

// The word whose backslash stands, unescaped, at `index`; without letters when it is a symbol.
inline ControlWord readWord(std::u16string_view text, std::size_t index) noexcept {
    std::size_t at = index + 1;
    while (at < text.size() && isLetter(text[at])) ++at;
    const std::size_t letters = at;
    if (at + 1 < text.size() && text[at] == u'-' && isDecimalDigit(text[at + 1])) ++at;
    while (at < text.size() && isDecimalDigit(text[at])) ++at;
    return {index, text.substr(index + 1, letters - index - 1), text.substr(letters, at - letters), at};
}

// Behind the word and the blank that ends it, if there is one.
inline std::size_t endWithBlank(std::u16string_view text, const ControlWord& word) noexcept {
    return word.end + (standsAt(text, word.end, u" ") ? 1 : 0);
}

}  // namespace velmor
