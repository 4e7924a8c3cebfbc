#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Removes every "{\*\background" group, also one that another removal joins. A group without its closing brace
// stays, and so does everything after it. One pass, in place.
void RemoveBackground(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
