#include "platform/ByteOrderMark.h"

#include <cstdint>

#include "text/Encoding.h"

namespace velmor::platform {

std::u16string unitsOf(std::string_view bytes, bool bigEndian) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto first = static_cast<std::uint8_t>(bytes[2 * i]);
        const auto second = static_cast<std::uint8_t>(bytes[2 * i + 1]);
        text[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
    }
    return text;
}

std::optional<std::u16string> decodeMarked(std::string_view bytes) {
    if (bytes.starts_with("\xef\xbb\xbf")) return fromUtf8(bytes.substr(3));
    if (bytes.starts_with("\xff\xfe")) return unitsOf(bytes.substr(2), false);
    if (bytes.starts_with("\xfe\xff")) return unitsOf(bytes.substr(2), true);
    return std::nullopt;
}

}  // namespace velmor::platform
