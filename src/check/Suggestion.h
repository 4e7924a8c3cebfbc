#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// The name that somebody probably meant: the nearest of the names by edits (a letter added, left out, replaced, or
// two exchanged), without regard to case; empty when all are too far away. An equal name counts as near.
// Costs the product of both lengths for each name of a similar length.
std::u16string nearestName(std::u16string_view written, const std::vector<std::u16string>& names);

// "did you mean NAME?", or "".
std::u16string didYouMean(std::u16string_view written, const std::vector<std::u16string>& names);

}  // namespace velmor
