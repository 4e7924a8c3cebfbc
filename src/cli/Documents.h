#pragma once

#include <string>
#include <string_view>

namespace velmor::cli {

// How plain text and property files are coded. An RTF document is coded as RTF is, whatever is asked.
enum class TextEncoding { ansi, utf8 };

// Does the text begin as the engine wants an RTF document to begin?
bool isRtf(std::string_view bytes);
bool isRtf(std::u16string_view text);

// A template or another text from its bytes; `name` is for messages. Bytes that are not UTF-8 where
// UTF-8 is asked for throw Failure (exitFile) instead of being replaced.
std::u16string decodeText(std::string_view bytes, TextEncoding encoding, const std::string& name);
std::u16string decodeTemplate(std::string_view bytes, TextEncoding encoding, const std::string& name);

// The bytes of a result; no character is ever lost. RTF: the ANSI code page, and what it has not as
// \uN? (in a group with \uc1 when the document counts its fallback characters otherwise). Plain text
// in the encoding; a character that the ANSI code page has not throws Failure (exitFile).
std::string encodeResult(std::u16string_view result, TextEncoding encoding);

}  // namespace velmor::cli
