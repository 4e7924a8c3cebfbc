#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace velmor::platform {

using GuidBytes = std::array<std::uint8_t, 16>;  // in written order

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper case.
std::u16string guidText(const GuidBytes& bytes);

}  // namespace velmor::platform
