#pragma once

#include <cstddef>
#include <string_view>

namespace velmor {

// True when an odd run of backslashes ends just before the 0-based index: the character there is
// escaped. Costs the length of the run.
inline bool isEscaped(std::u16string_view text, std::size_t index) noexcept {
    std::size_t run = 0;
    while (run < index && text[index - 1 - run] == u'\\') ++run;
    return run % 2 == 1;
}

}  // namespace velmor
