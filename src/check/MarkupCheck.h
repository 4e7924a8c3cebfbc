#pragma once

#include "check/DiagnosticList.h"
#include "check/TemplateFile.h"

namespace velmor {

// Finds what is wrong with the markup of a file's tags: markers without their partner, tags that another's marker
// closes, tags that RTF or a word processor's corrections have changed. Returns for each tag of the file whether its
// text is to be relied on. Linear in the file.
std::vector<bool> checkMarkup(const TemplateFile& file, DiagnosticList& found);

}  // namespace velmor
