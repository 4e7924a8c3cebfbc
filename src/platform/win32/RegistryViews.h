#pragma once

#include "platform/win32/Windows.h"

namespace velmor::platform {

// A 64-bit Windows has a registry for 64-bit and one for 32-bit programs; parts of them are shared. A program sees its
// own. On a 32-bit Windows both are the same.
inline constexpr bool is64Bit = sizeof(void*) == 8;
inline constexpr REGSAM ownView = is64Bit ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
inline constexpr REGSAM otherView = is64Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;

}  // namespace velmor::platform
