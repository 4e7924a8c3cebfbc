#include "cli/LineText.h"

#include "text/Encoding.h"

namespace velmor::cli {

std::string shown(std::u16string_view text) {
    return toUtf8(onOneLine(text, 200));
}

std::u16string padded(std::u16string text, std::size_t width) {
    if (text.size() < width) text.resize(width, u' ');
    return text;
}

}  // namespace velmor::cli
