#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace velmor::platform {

using GuidBytes = std::array<std::uint8_t, 16>;  // in written order

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case.
inline std::u16string guidText(const GuidBytes& bytes) {
    constexpr std::u16string_view digits = u"0123456789ABCDEF";
    std::u16string text = u"{";
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += u'-';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
    return text + u'}';
}

}  // namespace velmor::platform
