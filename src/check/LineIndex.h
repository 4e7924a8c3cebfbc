#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace velmor {

// Lines and columns of a text. A line ends with CR LF, CR or LF. Built in one pass; a look-up costs the logarithm of
// the number of lines.
class LineIndex {
public:
    explicit LineIndex(std::u16string_view text);

    // Line and column of a 0-based index, both from 1. Costs less if the index is in line `near` or the next one.
    std::pair<std::size_t, std::size_t> at(std::size_t index, std::size_t near = 1) const noexcept;
    // The 0-based index of a column of a line, both from 1; nothing if the line ends before it.
    std::optional<std::size_t> indexOf(std::size_t line, std::size_t column) const noexcept;

private:
    // The line from 0.
    bool lineHolds(std::size_t line, std::size_t index) const noexcept {
        return starts_[line] <= index && (line + 1 == starts_.size() || index < starts_[line + 1]);
    }

    std::vector<std::size_t> starts_{0};
    std::size_t size_;
};

}  // namespace velmor
