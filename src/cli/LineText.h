#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text/Encoding.h"
#include "text/OneLine.h"

namespace velmor::cli {

// A text that comes from a document or a handler, in a message or a list: on one line, of at most 200 units.
inline std::string shown(std::u16string_view text) {
    return toUtf8(onOneLine(text, 200));
}

// With blanks up to the width of a column, counted in UTF-16 units.
inline std::u16string padded(std::u16string text, std::size_t width) {
    if (text.size() < width) text.resize(width, u' ');
    return text;
}

}  // namespace velmor::cli
