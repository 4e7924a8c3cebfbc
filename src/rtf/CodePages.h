#pragma once

#include <array>
#include <cstdint>

namespace velmor {

// A single-byte code page: what its bytes 0x80 to 0xFF mean.
struct CodePage {
    std::int32_t number;
    std::array<char16_t, 128> upperHalf;

    char16_t meaning(std::uint8_t byte) const noexcept { return byte < 0x80 ? byte : upperHalf[byte - 0x80u]; }
};

// Null for a page of several bytes a character, and for one that is unknown.
const CodePage* findCodePage(std::int32_t number) noexcept;

}  // namespace velmor
