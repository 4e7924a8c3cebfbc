#pragma once

#include <string>
#include <string_view>

namespace velmor::cli {

// How plain text and property files are coded. An RTF document is coded as RTF is, whatever is asked.
enum class TextEncoding { ansi, utf8 };

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

// The bytes of a result; no character is ever lost. RTF: the ANSI code page, and what it has not as
// \uN? (in a group with \uc1 when the document counts its fallback characters otherwise). Plain text
// in the encoding; a character that the ANSI code page has not throws Failure (exitFile).
std::string encodeResult(std::u16string_view result, TextEncoding encoding);

}  // namespace velmor::cli
