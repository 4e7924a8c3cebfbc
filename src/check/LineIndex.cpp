#include "check/LineIndex.h"

#include <algorithm>

namespace velmor {

LineIndex::LineIndex(std::u16string_view text) {
    for (std::size_t i = text.find_first_of(u"\r\n"); i < text.size(); i = text.find_first_of(u"\r\n", i)) {
        i += text.substr(i, 2) == u"\r\n" ? 2 : 1;
        starts_.push_back(i);
    }
}

std::pair<std::size_t, std::size_t> LineIndex::at(std::size_t index) const noexcept {
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), index);
    return {static_cast<std::size_t>(next - starts_.begin()), index - *(next - 1) + 1};
}

}  // namespace velmor
