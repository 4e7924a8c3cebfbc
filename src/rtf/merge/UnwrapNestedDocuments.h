#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Takes the wrapping off every document that lies in the host: "{\rtf1" and its closing brace. A
// document without that brace keeps its wrapping, and so does all behind its opening.
//
// Tolerant: documents of any version lose it, and the words of their headers that speak for a whole
// document (character set, default font, page); a brace stays on either side, so that what the
// document sets ends with it. One pass, no recursion.
void UnwrapNestedDocuments(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
