#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// The first place in the text that a page shows in its paragraph: characters other than blanks, breaks, fields,
// pictures. Groups that a reader ignores, or shows elsewhere, do not count. The text's size when nothing shows.
// Linear in the text.
std::size_t firstShown(std::u16string_view text) noexcept;

inline bool showsText(std::u16string_view text) noexcept {
    return firstShown(text) != text.size();
}

// The words that set up a paragraph (alignment, indents, spacing, tabs, borders, style; not its list, and not
// its characters), from the run of control words after the "\pard" at `index`. Costs, and returns, a few
// hundred units at most: a longer run gives the words of its beginning.
std::u16string paragraphWords(std::u16string_view text, std::size_t index);

}  // namespace velmor
