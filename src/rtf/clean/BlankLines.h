#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Makes one carriage return and line feed of any run of them. One pass, in place.
void CollapseBlankLines(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
