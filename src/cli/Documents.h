#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/DocumentText.h"

namespace velmor::cli {

// The choice of --encoding. A byte order mark (UTF-8, UTF-16) takes precedence, and RTF is always in
// the ANSI code page.
enum class EncodingChoice {
    automatic,  // UTF-8 where the bytes are valid UTF-8 with a character beyond ASCII, else ANSI
    ansi,
    utf8
};

// A text from its bytes, without a byte order mark; `name` is for messages. Throws Failure (exitFile)
// for bytes that are not UTF-8 although the choice or a mark says so, and for half a UTF-16 unit.
std::u16string decodeText(std::string_view bytes, EncodingChoice choice, const std::string& name);

// A template, and how its result is to be encoded. The text keeps its byte order mark, so that the
// result begins with it. A plain-text template in ASCII alone takes the encoding of the locale when
// the choice is automatic.
struct Document {
    std::u16string text;
    TextEncoding encoding = TextEncoding::ansi;
};
Document decodeTemplate(std::string_view bytes, EncodingChoice choice, const std::string& name);

// The bytes of a result (encodeDocument). Throws Failure (exitFile) for a character that the ANSI code page does not
// have.
std::string encodeResult(std::u16string_view result, TextEncoding encoding, PlaceShifts* shifts = nullptr);

}  // namespace velmor::cli
