#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace velmor {

// A marker of a table. Indices are 0-based.
struct TableMarker {
    std::size_t begin;
    std::size_t end;  // after the marker
    bool isStart;
    std::u16string_view identity;
    std::size_t tableEnd = static_cast<std::size_t>(-1);  // of a start marker: the begin of its end marker
};

// The markers that form pairs, from left to right; pairs are nested or adjacent and never cross. A start marker
// belongs to the next end marker with its identifier within the pair around it. A start marker without such an
// end ends the search in that pair; tolerant reading skips it, and the data of \bin. An identifier has up to
// 255 units; a start marker without one is ignored. Linear in the text.
std::vector<TableMarker> findMarkerPairs(std::u16string_view text, bool tolerant);

}  // namespace velmor
