#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace velmor {

// An optional "-" and decimal digits within 32 bits; nothing for any other text.
std::optional<std::int32_t> wholeNumber(std::u16string_view text) noexcept;

}  // namespace velmor
