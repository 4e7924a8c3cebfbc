#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/OneLine.h"

namespace velmor::cli {

// A text that comes from a document or a handler, in a message or a list: on one line, of at most 200 units.
std::string shown(std::u16string_view text);

// With blanks up to the width of a column, counted in UTF-16 units.
std::u16string padded(std::u16string text, std::size_t width);

}  // namespace velmor::cli
