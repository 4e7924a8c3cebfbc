#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor::cli {

// A text as part of a line for people: control characters are shown as \r, \n, \t or \u and four
// digits, as lone surrogates are; of a text with more than `longest` units its beginning.
std::u16string onOneLine(std::u16string_view text, std::size_t longest = std::u16string_view::npos);

// With blanks up to the width of a column. Each part of a pair of surrogates counts; that is near
// enough.
std::u16string padded(std::u16string text, std::size_t width);

}  // namespace velmor::cli
