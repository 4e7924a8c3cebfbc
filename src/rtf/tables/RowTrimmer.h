#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Gets the cells, definitions and ends of a table's rows from left to right, and returns the removable text
// between a row's last cell and its end.
class RowTrimmer {
public:
    void definition() noexcept { definedAfter_ = true; }

    void cell(std::size_t position) noexcept {
        cellEnd_ = position + cellLength;
        definedBefore_ = definedBefore_ || definedAfter_;
        definedAfter_ = false;
    }

    // A marker precedes the index, or will do so.
    void marker(std::size_t position) noexcept { markerAt_ = std::max(markerAt_, position); }

    // The end of the row; the next row begins.
    std::optional<TextRange> row(std::size_t position) noexcept {
        const TextRange range{cellEnd_, position};
        const bool onlyDefinition = definedAfter_ && !definedBefore_;
        const bool removable = cellEnd_ != 0 && position > cellEnd_ + 1 && !onlyDefinition && markerAt_ < cellEnd_;
        *this = {};
        return removable ? std::optional(range) : std::nullopt;
    }

private:
    static constexpr std::size_t cellLength = 5;

    std::size_t cellEnd_ = 0;  // 0: the row has no cell yet
    std::size_t markerAt_ = 0;
    bool definedBefore_ = false;  // before the last cell
    bool definedAfter_ = false;
};

}  // namespace velmor
