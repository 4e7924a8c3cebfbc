#pragma once

#include <string_view>

namespace velmor {

// Whether a row of the document may still be open at its end, so that a stage would take what follows for a part of it:
// a \trowd or \cell without a \row in the same text of paragraphs (body, header, footnote, ...), or between the same
// table markers. One pass.
bool leavesRowOpen(std::u16string_view document);

}  // namespace velmor
