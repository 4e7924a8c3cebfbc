#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// A single-byte code page: the meaning of its bytes 0x80 to 0xFF.
struct CodePage {
    std::int32_t number;
    std::array<char16_t, 128> upperHalf;

    char16_t meaning(std::uint8_t byte) const noexcept { return byte < 0x80 ? byte : upperHalf[byte - 0x80u]; }
};

inline constexpr std::int32_t windowsLatin = 1252;

// Null for a multi-byte or unknown code page.
const CodePage* findCodePage(std::int32_t number) noexcept;

// The font character set of a multi-byte code page; empty for another page.
std::u16string_view characterSetOf(std::int32_t page) noexcept;

// Turns each byte of `from` that has another meaning in `to`, or none by itself (null: multi-byte), into its
// character, with a "?" for readers without Unicode.
std::u16string withCharacters(std::u16string_view text, const CodePage& from, const CodePage* to);

// As \uN with a blank or its fallback characters.
std::u16string unicodeWord(char16_t unit, std::int32_t fallback);

// The byte of a \'xx at the index; negative when it is invalid.
std::int32_t byteAt(std::u16string_view text, std::size_t index) noexcept;

// The code page that a word of a document's header names; 0 for another word.
std::int32_t codePageNamedBy(const ControlWord& word) noexcept;

// The code page of the document whose header begins at `header`, possibly after inserted tables; 1252 when it
// names none.
std::int32_t codePageOfDocument(std::u16string_view text, std::size_t header) noexcept;

}  // namespace velmor
