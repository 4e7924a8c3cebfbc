#pragma once

#include <string>

namespace velmor::Module1 {

// Removes the words of section formatting that directly follow a group "{\*\generator Korvane RTF Control...}"
// of less than 70 characters, with the white space after them; never text or braces. If anything was removed,
// also removes the blanks at the end of the text. One pass.
void RemoveGeneratorSectionWords(std::u16string& psText);

// Removes each "{\*\generator" group that equals the last one kept before it; the text between them does not
// matter. A group ends at the first "}" after its opening; one without it ends the stage. One pass. `psKept` is the
// last group kept before the text; returns the last one that stays.
std::u16string RemoveDuplicateGenerators(std::u16string& psText, std::u16string psKept = {});

}  // namespace velmor::Module1
