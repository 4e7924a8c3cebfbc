#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmor {

// The distance of a document's default tab stops in twips: its \deftab, else RTF's own. Costs a search.
std::int32_t defaultTabOf(std::u16string_view text);

// The width of a document's text in twips, from the words that describe its page, else RTF's own.
std::int32_t textWidthOf(std::u16string_view text);

// Gives the paragraphs with tabs explicit stops at multiples of `distance`, from their own last stop or indent up to
// `width`: RTF has one distance for a whole document, and these are to become part of another one. `text` is a
// document without its tables. One pass. Raises what TextEdits::apply raises.
void keepDefaultTabs(std::u16string& text, std::int32_t distance, std::int32_t width);

}  // namespace velmor
