#pragma once

#include <string>
#include <string_view>

namespace velmor {

// How plain text is encoded in a file. An RTF document is encoded as RTF is, whatever is asked. A byte order mark is
// part of the text.
enum class TextEncoding { ansi, utf8, utf16, utf16BigEndian };

// The bytes of a finished document; no character is ever lost.
// RTF: the ANSI code page, and a character that it does not have as \uN? (in a group with \uc1 where the document
// counts its fallback characters otherwise). Plain text: the encoding; a character that the ANSI code page does not
// have throws Error 5, which names the character and its 1-based position in UTF-16 code units. Linear.
std::string encodeDocument(std::u16string_view text, TextEncoding encoding);

}  // namespace velmor
