#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmor::platform {

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case, of 16 bytes in written order.
inline std::u16string guidText(std::string_view bytes) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string text = u"{";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += u'-';
        text += digits[static_cast<std::uint8_t>(bytes[i]) >> 4];
        text += digits[bytes[i] & 15];
    }
    return text + u'}';
}

}  // namespace velmor::platform
