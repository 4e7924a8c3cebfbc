#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// A document as parts that repeat its text: `before`, then `row` any number of times, then `after`.
struct RepeatedText {
    std::u16string before, row, after;
};

// Of a document of nothing but a table, the rows are what is repeated, so that they become one table. Any other text is
// repeated within braces. Nothing if the document, which begins at index 0, has no closing brace. Linear.
std::optional<RepeatedText> repeatedTextOf(std::u16string_view document);

}  // namespace velmor
