#include "check/Suggestion.h"

#include <algorithm>
#include <cstddef>

#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::size_t longestName = 100;

// As many edits as a third of the letters, and at most three.
std::size_t mostEdits(std::size_t length) noexcept {
    return length < 3 ? 0 : std::min<std::size_t>(3, std::max<std::size_t>(1, length / 3));
}

// The edits that turn one text into the other.
std::size_t editsBetween(std::u16string_view left, std::u16string_view right) {
    const std::size_t width = right.size() + 1;
    std::vector<std::size_t> beforeLast(width), last(width), row(width);
    for (std::size_t j = 0; j < width; ++j) last[j] = j;
    for (std::size_t i = 1; i <= left.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j < width; ++j) {
            const bool isEqual = foldUnit(left[i - 1]) == foldUnit(right[j - 1]);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (isEqual ? 0 : 1)});
            const bool isExchanged = i > 1 && j > 1 && foldUnit(left[i - 1]) == foldUnit(right[j - 2]) &&
                                     foldUnit(left[i - 2]) == foldUnit(right[j - 1]);
            if (isExchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        beforeLast.swap(last);
        last.swap(row);
    }
    return last[right.size()];
}

}  // namespace

std::u16string nearestName(std::u16string_view written, const std::vector<std::u16string>& names) {
    std::u16string nearest;
    std::size_t fewest = mostEdits(written.size()) + 1;
    if (written.size() > longestName) return nearest;
    for (const std::u16string& name : names) {
        const std::size_t longer = std::max(name.size(), written.size());
        if (longer - std::min(name.size(), written.size()) >= fewest) continue;
        const std::size_t edits = editsBetween(written, name);
        if (edits >= fewest) continue;
        fewest = edits;
        nearest = name;
    }
    return nearest;
}

std::u16string didYouMean(std::u16string_view written, const std::vector<std::u16string>& names) {
    const std::u16string nearest = nearestName(written, names);
    return nearest.empty() ? std::u16string() : u"did you mean " + nearest + u"?";
}

}  // namespace velmor
