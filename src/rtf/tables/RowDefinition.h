#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

struct RowDefinition {
    TextRange range;
    std::size_t columns = 0;  // its \cellx words
    std::size_t right = 0;    // the number of the last one
};

// The definition of a row that begins with the "\trowd" at `begin`: the unbroken run of control words up to the
// paragraph, the row's end or the definition that follows. If something else ends the run, the definition ends
// with the run's last word about rows or cells, so that words of the paragraph and its text stay in place.
// Reads up to `limit`.
RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept;

}  // namespace velmor
