#pragma once

#include <string>

namespace velmor::Module1 {

// Removes each "{\*\generator" group that equals the last one kept before it; what stands between
// them does not matter. A group ends at the first "}" after its opening; one without it ends the walk. One pass.
void RemoveDuplicateGenerators(std::u16string& psText);

}  // namespace velmor::Module1
