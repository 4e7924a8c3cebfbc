#pragma once

#include <string>

#include "rtf/CleanOptions.h"

namespace velmor::Module1 {

// Removes each "{\*\generator" group that equals the last one kept before it; what stands between
// them does not matter. A group without its closing brace ends the walk. One pass.
void RemoveDuplicateGenerators(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
