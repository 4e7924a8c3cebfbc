#include "check/LineIndex.h"

#include <algorithm>

namespace velmor {

LineIndex::LineIndex(std::u16string_view text) : size_(text.size()) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] > u'\r') continue;
        const bool isEnd = text[i] == u'\n' || (text[i] == u'\r' && text.substr(i + 1, 1) != u"\n");
        if (isEnd) starts_.push_back(i + 1);
    }
}

std::pair<std::size_t, std::size_t> LineIndex::at(std::size_t index, std::size_t near) const noexcept {
    std::size_t line = near - 1;
    if (line + 1 < starts_.size() && !lineHolds(line, index)) ++line;
    if (!lineHolds(line, index)) {
        const auto next = std::upper_bound(starts_.begin(), starts_.end(), index);
        line = static_cast<std::size_t>(next - starts_.begin()) - 1;
    }
    return {line + 1, index - starts_[line] + 1};
}

std::optional<std::size_t> LineIndex::indexOf(std::size_t line, std::size_t column) const noexcept {
    if (line < 1 || line > starts_.size() || column < 1) return std::nullopt;
    const std::size_t end = line < starts_.size() ? starts_[line] : size_;
    const std::size_t start = starts_[line - 1];
    return column > end - start ? std::nullopt : std::optional(start + column - 1);
}

}  // namespace velmor
