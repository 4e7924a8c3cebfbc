#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// A text as part of one line: control characters and lone surrogates are shown as \r, \n, \t or \u and four digits; a
// text of more than `longest` units is shortened.
std::u16string onOneLine(std::u16string_view text, std::size_t longest = std::u16string_view::npos);

// The text with U+FFFD for each lone surrogate, so that every encoding has its characters.
std::u16string withoutLoneSurrogates(std::u16string text);

}  // namespace velmor
