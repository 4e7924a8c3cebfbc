#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Removes every "{\*\background" group, also one that another's removal puts together. One without
// its closing brace stays, and so does all behind it. One pass, in place.
void RemoveBackground(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
