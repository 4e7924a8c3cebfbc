#pragma once

#include <cstddef>
#include <string_view>

namespace velmor {

// Whether the character at a 0-based index is escaped: an odd run of backslashes ends just before it. For ascending
// indexes of one text, which does not change before the last of them. A run is walked once, so a whole sweep costs no
// more than the text, backslashes throughout included.
class EscapeScan {
public:
    bool isEscaped(std::u16string_view text, std::size_t index) noexcept {
        std::size_t start = index;
        while (start > asked_ && text[start - 1] == u'\\') --start;
        run_ = index - start + (start == asked_ ? run_ : 0);
        asked_ = index;
        return run_ % 2 == 1;
    }

private:
    std::size_t asked_ = 0;  // the last index asked for,
    std::size_t run_ = 0;    // and the backslashes just before it
};

// The same for one index. Costs the length of the run.
inline bool isEscaped(std::u16string_view text, std::size_t index) noexcept {
    return EscapeScan().isEscaped(text, index);
}

}  // namespace velmor
