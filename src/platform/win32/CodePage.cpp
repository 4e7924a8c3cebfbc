#include "platform/win32/CodePage.h"

#include <array>

#include "platform/win32/Windows.h"
#include "text/Encoding.h"

namespace velmor::platform {

void installAnsiCodePage() noexcept {
    CPINFO info{};
    if (!GetCPInfo(CP_ACP, &info) || info.MaxCharSize != 1) return;
    std::array<char16_t, 128> upperHalf{};
    for (std::size_t index = 0; index < upperHalf.size(); ++index) {
        const char byte = static_cast<char>(0x80 + index);
        wchar_t unit = 0;
        const bool known = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, &byte, 1, &unit, 1) == 1;
        upperHalf[index] = static_cast<char16_t>(known ? unit : 0x80 + index);
    }
    useAnsiCodePage(upperHalf);
}

}  // namespace velmor::platform
