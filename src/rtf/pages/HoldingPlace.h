#pragma once

#include <cstddef>

namespace velmor {

// The place where words that describe a section hold to its end. A reader restores the section at a closing
// brace; so the place moves after each brace that closes a group around it. Depths count the open groups; the
// host's own is 1.
class HoldingPlace {
public:
    HoldingPlace(std::size_t begin, std::size_t depth) noexcept : at_(begin), depth_(depth) {}

    // A brace closes a group; `depth` is the depth after it.
    void close(std::size_t brace, std::size_t depth) noexcept {
        if (depth >= depth_ || depth == 0) return;
        at_ = brace + 1;
        depth_ = depth;
    }

    std::size_t at() const noexcept { return at_; }

private:
    std::size_t at_;
    std::size_t depth_;
};

}  // namespace velmor
