#include "text/SpareTail.h"

#include <algorithm>

namespace velmor {

void SpareTail::drop(std::size_t count) noexcept {
    const std::size_t stale = std::min(count, stale_.size());
    stale_.resize(stale_.size() - stale);
    blanks_ -= count - stale;
}

void SpareTail::prepend(std::u16string_view text) {
    stale_.append(text.rbegin(), text.rend());
}

void SpareTail::clear() noexcept {
    std::u16string().swap(stale_);
    blanks_ = 0;
}

}  // namespace velmor
