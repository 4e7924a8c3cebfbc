#pragma once

#include <string>

#include "rtf/CleanOptions.h"

namespace velmor::Module1 {

// Replaces each marker of a joined document, "{\*\korvanemergepagebreak}", by a section break with
// the page of that document: of its first "\sectd", up to the next "\sect" or "\page", or else of the
// document's own words up to the next marker. Where no word says, 0 stands.
//
// A marker whose document has "\sect" but no "\page" behind its "\sectd" stays. Tolerant: it is
// replaced too; absent values are those that RTF sets for a document; and the document's "\sectd"
// comes to stand in the break, where it does not undo it. One pass.
void ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
