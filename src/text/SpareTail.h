#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/GapText.h"

namespace velmor {

// The stale characters that follow a builder's content. Everything after them is blank.
//
// Each removal prepends the last characters of the content. A sweep of removals far from the end
// prepends many suffixes of the same text, so that text is copied once and each removal is stored as
// a pair of numbers.
class SpareTail {
public:
    std::size_t size() const noexcept { return size_; }
    // Holds no characters and does not depend on the content.
    bool isIdle() const noexcept { return (size_ | unchanged_) == 0; }
    // Copies the first `count` characters that follow the content.
    void copyTo(std::size_t count, char16_t* target) const noexcept;

    // Call before removing `count` characters that `rest` characters follow: prepends the content's
    // last `count` characters. Changes nothing if it throws.
    void keepLast(const GapText& content, std::size_t count, std::size_t rest);
    // Removes the first `count` characters, or all if there are fewer.
    void drop(std::size_t count) noexcept;
    // Tells that only the content's last `rest` characters are certain to be unchanged.
    void contentChanged(std::size_t rest) noexcept { unchanged_ = unchanged_ < rest ? unchanged_ : rest; }
    void clear() noexcept { *this = SpareTail(); }

    // Applies the same change of case as the whole content.
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

    std::u16string texts_;       // former suffixes of the content
    std::vector<Run> runs_;      // the stale characters, in reverse order; ends never decrease
    std::size_t size_ = 0;       // the sum of the counts
    std::size_t unchanged_ = 0;  // number of trailing units that texts_ and the content still share
};

}  // namespace velmor
