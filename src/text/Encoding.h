#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// UTF-8 in which a lone surrogate survives the round trip (it is written as its three bytes).
// Malformed bytes decode to U+FFFD, one for each maximal broken sequence.
std::string toUtf8(std::u16string_view text);
std::u16string fromUtf8(std::string_view bytes);
// The text that toUtf8 writes as these bytes; nothing if there is none.
std::optional<std::u16string> textOfUtf8(std::string_view bytes);

// The code units of UTF-16; an odd last byte is dropped.
std::u16string fromUtf16(std::string_view bytes, bool bigEndian);

// How plain text is encoded in a file. RTF documents ignore it.
enum class TextEncoding { ansi, utf8, utf16, utf16BigEndian };
// What a byte order mark at the begin says; nothing without one.
std::optional<TextEncoding> markedEncoding(std::string_view bytes) noexcept;
// The text after a byte order mark; nothing without one.
std::optional<std::u16string> decodeMarked(std::string_view bytes);

bool isAscii(std::string_view bytes) noexcept;
// How many characters of ASCII a text begins with.
std::size_t asciiLength(std::u16string_view text) noexcept;

// The ANSI code page: the system's on Windows, 1252 elsewhere. The five bytes that 1252 leaves
// undefined pass through as the control characters of the same number. What does not fit becomes
// "?"; there is no best fit, so a look-alike never becomes a backslash or a brace.
std::u16string fromAnsi(std::string_view bytes);
std::string toAnsi(std::u16string_view text);
// The code of one character: its byte, or both of its bytes, the first one high; of UTF-8 the first.
std::uint16_t ansiCode(char16_t unit) noexcept;

// A code page of one or two bytes a character.
struct AnsiCodePage {
    struct Pair {
        std::uint16_t code;  // the first byte, which is 0x80 or above, high
        char16_t unit;
    };
    // What the bytes 0x80 to 0xFF mean by themselves. A byte without a meaning, such as the first of
    // two that no second one follows, has a character here that nothing else means, to come back.
    std::array<char16_t, 128> upperHalf;
    // The characters of two bytes. Of several codes for one character, the first one is written.
    std::vector<Pair> pairs;
};
AnsiCodePage westernCodePage();  // 1252

// Makes another code page the ANSI one. The platform calls it at start-up, before any text is
// converted.
void useAnsiCodePage(const AnsiCodePage& page);
void useUtf8AsAnsi();

}  // namespace velmor
