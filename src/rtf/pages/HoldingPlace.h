#pragma once

#include <cstddef>
#include <cstdint>

namespace velmor {

// The place where words that describe a section hold to its end. A reader restores the section at a closing
// brace; so the place moves after each brace that closes a group around it. Depths count the open groups; the
// host's own is 1.
struct HoldingPlace {
    std::size_t at = 0;
    std::size_t depth = 0;
    std::uint32_t text = 0;  // if there are several: the one of `at`
    bool moved = false;

    // A group closes; `after` is the place after its brace.
    void leave(const HoldingPlace& after) noexcept {
        if (after.depth >= depth || after.depth == 0) return;
        *this = after;
        moved = true;
    }
};

}  // namespace velmor
