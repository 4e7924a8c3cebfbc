#pragma once

#include <string>
#include <string_view>

#include "common/PlaceShift.h"
#include "text/Encoding.h"

namespace velmor {

// The bytes of a finished document; no character is lost.
// RTF: the ANSI code page, and \uN? for a character that it lacks (in a group with \uc1 where the document sets
// another number of fallback characters). Plain text: the encoding; a character that the ANSI code page lacks
// throws Error 5, which names the character and its 1-based position in UTF-16 code units. Linear.
// A byte order mark is part of the text. `shifts` receives a shift for each character written as \uN?, in their order.
std::string encodeDocument(std::u16string_view text, TextEncoding encoding, PlaceShifts* shifts = nullptr);

}  // namespace velmor
