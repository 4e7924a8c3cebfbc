#pragma once

#include <string>
#include <string_view>

#include "rtf/clean/CleanHost.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Makes one valid document of a text whose RTF documents lie in one another: lifts them out, merges
// their tables into those of the first ("{\rtf", the host), puts them back, applies page breaks,
// section and table markers, and removes what merging leaves behind. A text that still holds a tag
// ("<KV:"), or no "\rtf1", stays as it is.
//
// Nothing here raises. A stage that cannot go on leaves the text as far as it came. Time is linear in
// the text, and memory holds it about twice.

// Whether the text is cleaned, and not left as it is.
bool isCleanable(std::u16string_view psText) noexcept;

// Reads the option "RTF Table Overrun Protection" for itself (absent, or exactly "1": on).
void CleanRTFText(std::u16string& psText, CleanOptions options, CleanHost& host) noexcept;

// Cleans a file into psSaveFileName, or into itself when that is empty. False when the file is
// missing or unreadable, or cannot be written; the target is then as it was.
bool CleanRTFFileText(std::u16string_view psFileName, std::u16string_view psSaveFileName, const CleanOptions& options,
                      CleanHost& host) noexcept;

// Writes the text in the system's 8-bit code page ("?" for what it lacks). The file is replaced whole
// or not at all.
bool SaveTextFile(std::u16string_view psText, std::u16string_view psFileName, platform::Files& files) noexcept;

}  // namespace velmor::Module1
