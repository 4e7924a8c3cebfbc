#include "check/LineIndex.h"

#include <algorithm>

namespace velmor {

LineIndex::LineIndex(std::u16string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEnd = text[i] == u'\n' || (text[i] == u'\r' && text.substr(i + 1, 1) != u"\n");
        if (isEnd) starts_.push_back(i + 1);
    }
}

std::pair<std::size_t, std::size_t> LineIndex::at(std::size_t index) const noexcept {
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), index);
    return {static_cast<std::size_t>(next - starts_.begin()), index - *(next - 1) + 1};
}

}  // namespace velmor
