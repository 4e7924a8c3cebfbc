#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace velmor {

// A marker of a table whose other marker is in the text too. Indices are 0-based.
struct PairedMarker {
    std::size_t begin = 0;
    std::size_t end = 0;  // after the marker
    bool isStart = false;
    std::size_t tableEnd = 0;  // the begin of the pair's end marker
};

// The markers that form pairs, from left to right; pairs are nested or adjacent and never cross. A start marker
// belongs to the next end marker with its identifier within the pair around it. A start marker without such an
// end ends the search in that pair; tolerant reading skips it, and the data of \bin. An identifier has up to
// 255 units; a start marker without one is ignored. Linear in the text.
std::vector<PairedMarker> findMarkerPairs(std::u16string_view text, bool tolerant);

}  // namespace velmor
