#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Quotes inside a quoted value are written as a character that the value does not hold: one of the
// codes 181 to 191 of the ANSI code page. The character comes first. This is an escape, not a cipher.

// The first of these characters that the text holds in neither case; nothing if it holds all.
std::optional<char16_t> substituteFor(std::u16string_view text);

// Readers take every character outside ASCII: a text may come from another code page.
inline bool isSubstitute(char16_t unit) noexcept {
    return unit >= 0x80;
}
inline bool isSubstituted(std::u16string_view text) noexcept {
    return !text.empty() && isSubstitute(text[0]);
}

// Appends the character and the text with that character for its quotes.
void appendSubstituted(std::u16string& target, std::u16string_view text, char16_t substitute);
// Of a text that begins with its substitution character.
std::u16string withoutSubstitute(std::u16string_view substituted);

}  // namespace velmor
