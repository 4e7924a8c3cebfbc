#include "text/Encoding.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velmor {

namespace {

constexpr std::array<char16_t, 32> windows1252 = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                  0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                                  0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                  0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

// The upper half of the code page, both ways.
struct CodePage {
    std::array<char16_t, 128> units;
    std::array<std::uint8_t, 128> bytesByUnit;  // ordered by unit; of equal units, the lower byte first

    explicit CodePage(const std::array<char16_t, 128>& upperHalf) noexcept : units(upperHalf), bytesByUnit() {
        for (std::size_t i = 0; i < bytesByUnit.size(); ++i) bytesByUnit[i] = static_cast<std::uint8_t>(0x80 + i);
        std::stable_sort(bytesByUnit.begin(), bytesByUnit.end(),
                         [this](std::uint8_t a, std::uint8_t b) { return unitOf(a) < unitOf(b); });
    }

    char16_t unitOf(std::uint8_t byte) const noexcept { return byte < 0x80 ? byte : units[byte - 0x80]; }

    std::uint8_t byteOf(char16_t unit) const noexcept {
        if (unit < 0x80) return static_cast<std::uint8_t>(unit);
        const auto found =
            std::lower_bound(bytesByUnit.begin(), bytesByUnit.end(), unit,
                             [this](std::uint8_t byte, char16_t sought) { return unitOf(byte) < sought; });
        return found != bytesByUnit.end() && unitOf(*found) == unit ? *found : '?';
    }
};

CodePage westernPage() noexcept {
    std::array<char16_t, 128> units;
    for (std::size_t i = 0; i < units.size(); ++i) {
        units[i] = i < windows1252.size() ? windows1252[i] : static_cast<char16_t>(0x80 + i);
    }
    return CodePage(units);
}

CodePage& ansiPage() noexcept {
    static CodePage page = westernPage();
    return page;
}

void appendUtf8(std::string& bytes, char32_t code) {
    if (code < 0x80) {
        bytes += static_cast<char>(code);
        return;
    }
    const int following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    const unsigned lead = following == 1 ? 0xC0 : following == 2 ? 0xE0 : 0xF0;
    bytes += static_cast<char>(lead | (code >> (6 * following)));
    for (int i = following - 1; i >= 0; --i) bytes += static_cast<char>(0x80 | ((code >> (6 * i)) & 0x3F));
}

bool isHigh(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
bool isLow(char16_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

// One character, or as much of one as there is.
struct Decoded {
    char32_t code;
    std::size_t size;
};

// The bytes that may follow a lead byte: which ones the second may be keeps out overlong forms and
// what lies beyond Unicode. Surrogates may be written.
Decoded decodeUtf8(std::string_view bytes) noexcept {
    const auto byteAt = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const std::uint8_t lead = byteAt(0);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || lead > 0xF4) return {0xFFFD, 1};
    const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    const std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t highest = lead == 0xF4 ? 0x8F : 0xBF;
    char32_t code = lead & (0xFFu >> (size + 1));
    for (std::size_t i = 1; i < size; ++i) {
        if (i == bytes.size()) return {0xFFFD, i};
        const std::uint8_t byte = byteAt(i);
        if (byte < (i == 1 ? lowest : 0x80) || byte > (i == 1 ? highest : 0xBF)) return {0xFFFD, i};
        code = (code << 6) | (byte & 0x3F);
    }
    return {code, size};
}

}  // namespace

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t code = text[i];
        if (isHigh(text[i]) && i + 1 < text.size() && isLow(text[i + 1])) {
            code = 0x10000 + ((code - 0xD800) << 10) + (text[++i] - 0xDC00u);
        }
        appendUtf8(bytes, code);
    }
    return bytes;
}

std::u16string fromUtf8(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const auto [code, size] = decodeUtf8(bytes);
        if (code < 0x10000) {
            text += static_cast<char16_t>(code);
        } else {
            text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        }
        bytes.remove_prefix(size);
    }
    return text;
}

void useAnsiCodePage(const std::array<char16_t, 128>& upperHalf) noexcept {
    ansiPage() = CodePage(upperHalf);
}

std::u16string fromAnsi(std::string_view bytes) {
    const CodePage& page = ansiPage();
    std::u16string text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(),
                   [&](char byte) { return page.unitOf(static_cast<std::uint8_t>(byte)); });
    return text;
}

std::string toAnsi(std::u16string_view text) {
    const CodePage& page = ansiPage();
    std::string bytes(text.size(), '\0');
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [&](char16_t unit) { return static_cast<char>(page.byteOf(unit)); });
    return bytes;
}

std::uint8_t ansiCode(char16_t unit) noexcept {
    return ansiPage().byteOf(unit);
}

}  // namespace velmor
