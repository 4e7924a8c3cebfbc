#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Removes the wrapping of every embedded document: "{\rtf1" and its closing brace. A document without that
// brace keeps its wrapping, and so do all documents after its opening.
//
// Tolerant: documents of any version lose it, and the header words that describe a whole document (character
// set, default font, page). A pair of braces stays, so that the document's settings end with it. One pass, no
// recursion.
void UnwrapNestedDocuments(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
