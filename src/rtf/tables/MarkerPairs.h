#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace velmor {

// A marker of a table whose other marker stands in the text, too. Indices are 0-based.
struct PairedMarker {
    std::size_t begin = 0;
    std::size_t end = 0;  // behind the marker
    bool isStart = false;
    std::size_t tableEnd = 0;  // where the end marker of the pair begins
};

// The markers that form pairs, from left to right; pairs lie in one another or side by side, and
// never cross. A start marker belongs to the first end marker of its identity behind it, in the pair
// in which it lies. One without such an end ends the search in that pair; tolerant, it is passed
// over, and so is the data of \bin. Identities may have any length up to 255; a start marker without one is none.
// Linear in the text.
std::vector<PairedMarker> findMarkerPairs(std::u16string_view text, bool tolerant);

}  // namespace velmor
