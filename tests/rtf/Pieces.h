#pragma once

#include <string_view>
#include <vector>

namespace velmor::test {

// The pieces between the bars.
inline std::vector<std::u16string_view> piecesOf(std::u16string_view text) {
    std::vector<std::u16string_view> pieces;
    for (std::size_t bar; (bar = text.find(u'|')) != text.npos; text.remove_prefix(bar + 1)) {
        pieces.push_back(text.substr(0, bar));
    }
    pieces.push_back(text);
    return pieces;
}

}  // namespace velmor::test
