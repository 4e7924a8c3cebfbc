#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmor {

// UTF-8 in which a lone surrogate survives the round trip (it is written as its three bytes).
// Malformed bytes decode to U+FFFD, one for each maximal broken sequence.
std::string toUtf8(std::u16string_view text);
std::u16string fromUtf8(std::string_view bytes);

// The ANSI code page: the system's on Windows, 1252 elsewhere. The five bytes that 1252 leaves
// undefined pass through as the control characters of the same number. What does not fit becomes
// "?"; there is no best fit, so a look-alike never becomes a backslash or a brace.
std::u16string fromAnsi(std::string_view bytes);
std::string toAnsi(std::u16string_view text);
std::uint8_t ansiCode(char16_t unit) noexcept;

// Makes another single-byte code page the ANSI one: what its bytes 0x80 to 0xFF stand for. The
// platform calls it at start-up, before any text is converted. A byte without a meaning (or the
// first of two, where there are such) is passed in as its own number.
void useAnsiCodePage(const std::array<char16_t, 128>& upperHalf) noexcept;

}  // namespace velmor
