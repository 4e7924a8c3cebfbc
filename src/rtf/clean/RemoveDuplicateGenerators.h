#pragma once

#include <string>

namespace velmor::Module1 {

// Removes each "{\*\generator" group that equals the last one kept before it; the text between them does not
// matter. A group ends at the first "}" after its opening; one without it ends the stage. One pass. `psKept` is the
// last group kept before the text; returns the last one that stays.
std::u16string RemoveDuplicateGenerators(std::u16string& psText, std::u16string psKept = {});

}  // namespace velmor::Module1
