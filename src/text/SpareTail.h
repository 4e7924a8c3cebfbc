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
    // Appends the first `count` characters that follow the content.
    void appendTo(std::u16string& text, std::size_t count) const {
        const std::size_t stale = std::min(count, reversed_.size());
        text.append(reversed_.rbegin(), reversed_.rbegin() + static_cast<std::ptrdiff_t>(stale));
        text.append(count - stale, u' ');
    }

    // Prepends the content's last `count` characters. Changes nothing if it throws.
    void keepLast(const GapText& content, std::size_t count) {
        if (count == 0) return;
        const auto [left, right] = content.range(content.size() - count, count);
        const std::size_t before = reversed_.size();
        reversed_.resize(before + count);
        const auto start = reversed_.begin() + static_cast<std::ptrdiff_t>(before);
        std::reverse_copy(left.begin(), left.end(), std::reverse_copy(right.begin(), right.end(), start));
    }
    // Removes the first `count` characters, or all if there are fewer.
    void drop(std::size_t count) noexcept {
        if (!reversed_.empty()) reversed_.resize(reversed_.size() - std::min(count, reversed_.size()));
    }
    void clear() noexcept { reversed_ = {}; }

    // Applies the same change of case as the whole content.
    void map(std::u16string (*change)(std::u16string_view)) { reversed_ = change(reversed_); }

private:
    std::u16string reversed_;
};

}  // namespace velmor
