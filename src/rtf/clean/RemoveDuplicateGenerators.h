#pragma once

#include <string>

namespace velmor::Module1 {

// Removes each "{\*\generator" group that equals the last one kept before it; the text between them does not
// matter. A group ends at the first "}" after its opening; one without it ends the stage. One pass.
void RemoveDuplicateGenerators(std::u16string& psText);

}  // namespace velmor::Module1
