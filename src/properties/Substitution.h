#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Quotes inside a quoted value are written as a character that the value does not hold: one of the
// codes 181 to 191 of the ANSI code page. An escaping scheme, not a cipher.

// The first of these characters that the text holds in neither case; nothing when it holds all.
std::optional<char16_t> substituteFor(std::u16string_view text);

// Readers take every character outside ASCII: a text may come from another code page.
inline bool isSubstitute(char16_t unit) noexcept {
    return unit >= 0x80;
}

void appendSubstituted(std::u16string& target, std::u16string_view text, char16_t substitute);
std::u16string withoutSubstitute(std::u16string_view text, char16_t substitute);

}  // namespace velmor
