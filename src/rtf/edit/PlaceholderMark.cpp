#include "rtf/edit/PlaceholderMark.h"

#include <algorithm>
#include <vector>

namespace velmor {

std::optional<char16_t> unusedMark(std::u16string_view text) {
    constexpr char16_t first = 0xFDD0;
    char16_t highest = 0;
    for (const char16_t unit : text) highest = std::max(highest, unit);
    if (highest < first) return first;

    // From the noncharacters through the private use area; no surrogates and no syntax of RTF.
    std::vector<bool> used(0x10000);
    for (const char16_t unit : text) used[unit] = true;
    for (unsigned mark = 0xFDEF; mark >= 0xE000; --mark) {
        if (!used[mark]) return static_cast<char16_t>(mark);
    }
    return std::nullopt;
}

}  // namespace velmor
