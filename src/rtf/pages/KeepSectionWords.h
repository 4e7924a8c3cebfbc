#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Tolerant cleaning, before documents are unwrapped. A lifted document stays between braces, and at the closing
// one readers forget the words of its last section. If that section shows nothing after the document, the words
// are written again where they hold to the section's end. If it shows more, and has another page or other columns
// than the host's section, the section ends with the document (outside merge mode). The section must be the
// document's own: it begins in the document, or, in merge mode, directly before it. Outside merge mode a section of a
// document has the page of the host's section where it names none.
//
// One pass, no recursion; fast for a text without "\sect".
void KeepSectionWords(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
