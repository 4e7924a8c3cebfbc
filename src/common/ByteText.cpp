#include "common/ByteText.h"

#include <array>
#include <cstdint>
#include <utility>

#include "common/Limits.h"
#include "text/Characters.h"

namespace velmor {
namespace {

constexpr std::string_view base64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t blankDigit = 64, paddingDigit = 65, foreignDigit = 66;

constexpr auto digitValues = [] {
    std::array<std::uint8_t, 128> values{};
    values.fill(foreignDigit);
    for (std::size_t i = 0; i < base64Digits.size(); ++i) {
        values[static_cast<unsigned char>(base64Digits[i])] = static_cast<std::uint8_t>(i);
    }
    for (const char space : {' ', '\t', '\r', '\n'}) values[static_cast<unsigned char>(space)] = blankDigit;
    values['='] = paddingDigit;
    return values;
}();

std::uint8_t valueOf(char16_t unit) {
    return unit < digitValues.size() ? digitValues[unit] : foreignDigit;
}

char16_t digit(std::uint32_t bits) {
    return static_cast<char16_t>(base64Digits[bits & 63]);
}

}  // namespace

std::u16string base64(std::string_view bytes) {
    std::u16string text((bytes.size() + 2) / 3 * 4, u'=');
    std::size_t place = 0;
    std::uint32_t bits = 0;
    int pending = 0;
    for (const char byte : bytes) {
        bits = bits << 8 | static_cast<std::uint8_t>(byte);
        for (pending += 8; pending >= 6; pending -= 6) text[place++] = digit(bits >> (pending - 6));
    }
    if (pending > 0) text[place] = digit(bits << (6 - pending));
    return text;
}

std::optional<std::string> fromBase64(std::u16string_view encoded) {
    if (encoded.size() / 4 * 3 > decodingLimit) return std::nullopt;
    std::string bytes;
    bytes.reserve(encoded.size() / 4 * 3 + 3);
    std::size_t digits = 0, padding = 0;
    std::uint32_t bits = 0;
    for (const char16_t unit : encoded) {
        const std::uint8_t value = valueOf(unit);
        if (value == blankDigit) continue;
        if (value == foreignDigit || (padding > 0 && value != paddingDigit)) return std::nullopt;
        if (value == paddingDigit) {
            ++padding;
            continue;
        }
        bits = bits << 6 | value;
        // The last three of four digits complete a byte each.
        if (const std::size_t place = digits++ % 4; place > 0) bytes += static_cast<char>(bits >> (6 - 2 * place));
    }
    const std::size_t last = digits % 4;
    const bool isPadded = padding == 0 || (last != 0 && padding == 4 - last);
    return last != 1 && isPadded ? std::optional(std::move(bytes)) : std::nullopt;
}

std::u16string hexadecimal(std::string_view bytes) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes) {
        const auto value = static_cast<std::uint8_t>(byte);
        text += digits[value >> 4];
        text += digits[value & 15];
    }
    return text;
}

std::optional<std::string> fromHexadecimal(std::u16string_view encoded) {
    if (encoded.size() / 2 > decodingLimit) return std::nullopt;
    std::string bytes;
    bytes.reserve(encoded.size() / 2);
    for (std::size_t i = 0; i < encoded.size();) {
        if (isWhiteSpace(encoded[i])) {
            ++i;
            continue;
        }
        if (i + 1 == encoded.size()) return std::nullopt;
        const int high = hexadecimalDigit(encoded[i]), low = hexadecimalDigit(encoded[i + 1]);
        if (high < 0 || low < 0) return std::nullopt;
        bytes.push_back(static_cast<char>(high << 4 | low));
        i += 2;
    }
    return bytes;
}

}  // namespace velmor
