#pragma once

#include <string>

namespace velmor::Module1 {

// Removes the words of section formatting that directly follow a group "{\*\generator Korvane RTF Control...}"
// of less than 70 characters, with the white space after them; never text or braces. If anything was removed,
// also removes the blanks at the end of the text. One pass.
void RemoveGeneratorSectionWords(std::u16string& psText);

}  // namespace velmor::Module1
