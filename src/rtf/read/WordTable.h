#pragma once

#include <cstdint>
#include <string_view>

namespace velmor {

// What a control word means to the stages. A word may have several traits.
enum class WordTrait : std::uint8_t {
    shown,          // the word puts something on the page: a character, or a break other than a paragraph's end
    shownCell,      // the word belongs to a row, and a row shows something
    shownGroup,     // the group that begins with it shows something where it stands
    hiddenGroup,    // the group that begins with it shows nothing where it stands
    documentWord,   // the word speaks for a whole document, and means nothing in a part of another one
    documentGroup,  // so does the group that begins with it
};

// Whether the table gives the word this trait. `letters` are the word's, without backslash and number.
// Costs a binary search.
bool wordIs(WordTrait trait, std::u16string_view letters) noexcept;

// Whether the word describes a section: its page, columns, numbers, borders, where it begins. "\sect" itself
// does not. Costs a few comparisons.
bool isSectionWord(std::u16string_view letters) noexcept;

// Whether the control symbol (the unit after its backslash) is seen on the page: an escaped character, a
// byte ("\'e4"), a non-breaking space or hyphen.
constexpr bool isShownSymbol(char16_t symbol) noexcept {
    return std::u16string_view(u"'~_{}\\").find(symbol) != std::u16string_view::npos;
}

}  // namespace velmor
