#pragma once

#include <string>
#include <string_view>

#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Makes one valid document of a text with documents in documents: lifts them out, merges their tables into
// those of the first ("{\rtf", the host), puts them back, applies page breaks, section and table markers, and
// removes leftovers. A text with a tag ("<KV:"), or without "\rtf1", stays unchanged.
//
// Nothing here raises. A stage that fails keeps its changes so far. Time is linear in the text, and memory
// holds it about twice.

// Whether cleaning applies to the text.
bool isCleanable(std::u16string_view psText) noexcept;

// The option "RTF Table Overrun Protection" (absent or exactly "1": on).
bool isOverrunProtectionOn(const platform::Registry& registry);

// Reads the option "RTF Table Overrun Protection" itself.
void CleanRTFText(std::u16string& psText, CleanOptions options, const platform::Services& services) noexcept;

}  // namespace velmor::Module1
