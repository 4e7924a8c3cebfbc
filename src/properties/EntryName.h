#pragma once

#include <string>
#include <string_view>

namespace velmor {

// Names in the text form. Readers drop leading white space, then a type prefix ("!x!" or "!xx!"), and
// take "!@" for ":".
std::u16string cleanName(std::u16string_view name);
std::u16string_view withoutLeadingBlanks(std::u16string_view name);

// Writes the name so that cleanName gives it back, for every name without "=" that needs ":" escaped;
// any other name is written as it is.
void appendName(std::u16string& target, std::u16string_view name);

}  // namespace velmor
