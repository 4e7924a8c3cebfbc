#pragma once

#include "check/DiagnosticList.h"
#include "check/TemplateFile.h"

namespace velmor {

// Finds braces that do not match, and rows whose cells do not agree with their definition, in a file that is an RTF
// document. Linear in the file.
void checkRtf(const TemplateFile& file, DiagnosticList& found);

}  // namespace velmor
