#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Replaces each run of line ends (carriage return and line feed) by one. One pass, in place.
void CollapseBlankLines(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
