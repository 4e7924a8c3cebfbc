#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/GapText.h"

namespace velmor {

// The stale characters behind a builder's content; what follows them is blank.
//
// Each removal puts the last characters of the content in front, so a sweep of removals far from
// the end puts many ends of one and the same text there. Such a text is copied once, and each
// removal is then a pair of numbers, not another copy.
class SpareTail {
public:
    std::size_t size() const noexcept { return size_; }
    // Neither holds anything nor relies on the content.
    bool isIdle() const noexcept { return (size_ | unchanged_) == 0; }
    // The first `count` characters behind the content.
    void copyTo(std::size_t count, char16_t* target) const noexcept;

    // For a removal of `count` characters that leaves `rest` behind them: the content's last `count`
    // come in front. Called before the removal. Nothing changes when this throws.
    void keepLast(const GapText& content, std::size_t count, std::size_t rest);
    // Takes away the first `count`, or all.
    void drop(std::size_t count) noexcept;
    // The content's last `rest` characters are what they were, the ones before perhaps not.
    void contentChanged(std::size_t rest) noexcept { unchanged_ = unchanged_ < rest ? unchanged_ : rest; }
    void clear() noexcept { *this = SpareTail(); }

    // For a change of case that the whole content goes through as well.
    template <typename Map>
    void transform(Map map) {
        for (char16_t& unit : texts_) unit = map(unit);
    }

private:
    // The last `count` units of texts_ before `end`.
    struct Run {
        std::uint32_t end;
        std::uint32_t count;
    };

    void copyEnd(const GapText& content, std::size_t count);

    std::u16string texts_;       // ends of the content, as it was at different times
    std::vector<Run> runs_;      // the stale characters, first ones last; ends never fall
    std::size_t size_ = 0;       // the sum of the counts
    std::size_t unchanged_ = 0;  // so much of the end of texts_ is the end of the content still
};

}  // namespace velmor
