#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Applies each section marker group, "{\*\korvanesection...}": the last remaining "\page" before it becomes a
// section break with the page that the group describes; without one, the last "\sectd" receives the page. The
// group is marked as done ("{\*\korvanecmplete").
//
// A value that a group does not give is the document's, or, if absent there, that of the previous group. Up to
// 50 it is in centimetres. An invalid number, or one that is too large, ends the stage at its group; earlier
// changes stay. Without any word the value is 0; tolerant, RTF's default.
//
// Tolerant: the words are written where they hold to the section's end, and the section's own page words are
// removed. A group that nothing precedes describes the first section; a "\page" in a table row begins no section. In
// merge mode, where the stage comes before ApplyMergePageBreaks, a group acts on its own document alone. Linear.
void ApplySectionMarkers(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
