#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "text/GapText.h"

namespace velmor {

// The stale characters that follow a builder's content. Everything after them is blank. Each removal
// prepends to them, so they are stored in reverse order.
class SpareTail {
public:
    std::size_t size() const noexcept { return reversed_.size(); }
    // Copies the first `count` characters that follow the content.
    void copyTo(std::size_t count, char16_t* target) const noexcept {
        const std::size_t stale = std::min(count, size());
        std::fill(std::copy_n(reversed_.rbegin(), stale, target), target + count, u' ');
    }

    // Prepends the content's last `count` characters. Changes nothing if it throws.
    void keepLast(const GapText& content, std::size_t count) {
        const auto [left, right] = content.range(content.size() - count, count);
        const std::size_t before = size();
        reversed_.resize(before + count);
        const auto start = reversed_.begin() + static_cast<std::ptrdiff_t>(before);
        std::reverse_copy(left.begin(), left.end(), std::reverse_copy(right.begin(), right.end(), start));
    }
    // Removes the first `count` characters, or all if there are fewer.
    void drop(std::size_t count) noexcept { reversed_.resize(size() - std::min(count, size())); }
    void clear() noexcept { reversed_ = {}; }

    // Applies the same change of case as the whole content.
    template <typename Map>
    void transform(Map map) {
        std::transform(reversed_.begin(), reversed_.end(), reversed_.begin(), map);
    }

private:
    std::u16string reversed_;
};

}  // namespace velmor
