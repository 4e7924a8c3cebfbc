#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Gives each section marker group, "{\*\korvanesection...}", its effect: the last "\page" in front of
// it that is left becomes a section break with the page that the group describes; when none is left,
// the last "\sectd" receives it. The group is marked as done ("{\*\korvanecmplete").
//
// A value that a group does not give is the document's, and when it gives none, that of the group
// before. Up to 50 it is in centimetres. A number that is none, or too large, ends the stage at its
// group; what was done stays. Where no word says, 0 stands; tolerant, what RTF sets for a document.
//
// Tolerant: the page holds to its section's end (see SectionDescriptions), and in merge mode, where the
// stage comes before ApplyMergePageBreaks, a group acts on its own document alone. Linear.
void ApplySectionMarkers(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
