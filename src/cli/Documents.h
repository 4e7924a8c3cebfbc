#pragma once

#include <string>
#include <string_view>

#include "common/DocumentText.h"

namespace velmor::cli {

// A text from its bytes; `name` is for messages. A byte order mark (UTF-8, UTF-16) counts more than
// the encoding, and is left out. Bytes that are not UTF-8 where UTF-8 is asked for throw Failure
// (exitFile) instead of being replaced.
std::u16string decodeText(std::string_view bytes, TextEncoding encoding, const std::string& name);

// A template, and how its result is to be coded. Plain text that begins with the UTF-8 byte order
// mark is UTF-8 and keeps the mark.
struct Document {
    std::u16string text;
    TextEncoding encoding = TextEncoding::ansi;
};
Document decodeTemplate(std::string_view bytes, TextEncoding encoding, const std::string& name);

// The bytes of a result (encodeDocument). Throws Failure (exitFile) for a character that the ANSI code page does not
// have.
std::string encodeResult(std::u16string_view result, TextEncoding encoding);

}  // namespace velmor::cli
