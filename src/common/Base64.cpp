#include "common/Base64.h"

#include <array>
#include <cstdint>

#include "common/Limits.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kSpace = 64, kPadding = 65, kForeign = 66;

constexpr auto kValues = [] {
    std::array<std::uint8_t, 128> values{};
    values.fill(kForeign);
    for (std::size_t i = 0; i < kDigits.size(); ++i) {
        values[static_cast<std::size_t>(kDigits[i])] = static_cast<std::uint8_t>(i);
    }
    for (const char space : {' ', '\t', '\r', '\n'}) values[static_cast<std::size_t>(space)] = kSpace;
    values['='] = kPadding;
    return values;
}();

std::uint8_t valueOf(char16_t unit) {
    return unit < kValues.size() ? kValues[unit] : kForeign;
}

char16_t digit(std::uint32_t bits) {
    return static_cast<char16_t>(kDigits[bits & 63]);
}

std::uint32_t byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<std::uint8_t>(bytes[index]);
}

// True if only white space follows the digits, and either no padding or exactly what the last group lacks.
bool endsWell(std::u16string_view rest, std::size_t digitsOfLastGroup) {
    std::size_t padding = 0;
    for (const char16_t unit : rest) {
        const std::uint8_t value = valueOf(unit);
        if (value != kPadding && value != kSpace) return false;
        padding += value == kPadding;
    }
    return digitsOfLastGroup != 1 && (padding == 0 || (digitsOfLastGroup != 0 && padding == 4 - digitsOfLastGroup));
}

}  // namespace

void appendBase64(std::u16string& target, std::string_view bytes) {
    std::size_t place = target.size();
    target.resize(place + (bytes.size() + 2) / 3 * 4, u'=');
    std::size_t i = 0;
    for (; i + 3 <= bytes.size(); i += 3) {
        const std::uint32_t group = byteAt(bytes, i) << 16 | byteAt(bytes, i + 1) << 8 | byteAt(bytes, i + 2);
        target[place++] = digit(group >> 18);
        target[place++] = digit(group >> 12);
        target[place++] = digit(group >> 6);
        target[place++] = digit(group);
    }
    if (i == bytes.size()) return;
    const bool two = i + 2 == bytes.size();
    const std::uint32_t group = byteAt(bytes, i) << 16 | (two ? byteAt(bytes, i + 1) << 8 : 0);
    target[place++] = digit(group >> 18);
    target[place++] = digit(group >> 12);
    if (two) target[place] = digit(group >> 6);
}

std::u16string base64(std::string_view bytes) {
    std::u16string text;
    appendBase64(text, bytes);
    return text;
}

std::u16string base64OfText(std::u16string_view text) {
    return base64(toUtf8(text));
}

std::optional<std::string> fromBase64(std::u16string_view encoded) {
    if (encoded.size() / 4 * 3 > decodingLimit) return std::nullopt;
    std::string bytes(encoded.size() / 4 * 3 + 3, '\0');
    std::size_t written = 0, digits = 0, i = 0;
    std::uint32_t group = 0;
    for (; i < encoded.size(); ++i) {
        const std::uint8_t value = valueOf(encoded[i]);
        if (value == kSpace) continue;
        if (value == kPadding) break;
        if (value == kForeign) return std::nullopt;
        group = group << 6 | value;
        if (++digits % 4 == 0) {
            bytes[written++] = static_cast<char>(group >> 16);
            bytes[written++] = static_cast<char>(group >> 8);
            bytes[written++] = static_cast<char>(group);
            group = 0;
        }
    }
    const std::size_t last = digits % 4;
    if (!endsWell(encoded.substr(i), last)) return std::nullopt;
    if (last != 0) group <<= 6 * (4 - last);
    if (last >= 2) bytes[written++] = static_cast<char>(group >> 16);
    if (last == 3) bytes[written++] = static_cast<char>(group >> 8);
    bytes.resize(written);
    return bytes;
}

std::optional<std::u16string> textFromBase64(std::u16string_view encoded) {
    const auto bytes = fromBase64(encoded);
    return bytes ? std::optional(fromUtf8(*bytes)) : std::nullopt;
}

}  // namespace velmor
