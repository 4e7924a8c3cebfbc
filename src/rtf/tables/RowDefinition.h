#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

struct RowDefinition {
    TextRange range;
    std::size_t columns = 0;     // its \cellx words
    std::size_t lastColumn = 0;  // where the last of them stands
};

// The definition of a row that begins with the "\trowd" at `begin`: the unbroken run of control words
// up to the paragraph, the row's end or the definition that follows. Where something else ends the
// run, the definition ends with the last word of it that is about rows or cells, so that what sets up
// a paragraph or its text stays in place. Looks no further than `limit`.
RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept;

// The same, told a definition of the text that may stand here once more: writers repeat it behind the cells.
RowDefinition rowDefinitionLike(std::u16string_view text, std::size_t begin, std::size_t limit,
                                const RowDefinition& known) noexcept;

}  // namespace velmor
