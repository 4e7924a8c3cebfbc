#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Tolerant cleaning, before documents are unwrapped. A lifted document stays between braces, at which
// readers forget what its last section says of itself. Where nothing is shown after the document in that
// section, the words are written again where they hold to the section's end. The section must be the
// document's own: it begins in the document, or, in merge mode, right before it.
//
// One pass, no recursion; quick for a text without "\sect".
void KeepSectionWords(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
