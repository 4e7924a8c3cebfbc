#include "common/Hexadecimal.h"

#include <cstdint>

#include "common/Limits.h"
#include "text/Characters.h"

namespace velmor {

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
