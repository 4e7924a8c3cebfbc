#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"

namespace velmor::automation::portable {

// The digits of the whole number that a Decimal divides: no leading zeros, "0" for zero.
std::string digitsOf(const Decimal& decimal);
// Nothing when the number needs more than 96 bits. Zero is never negative.
std::optional<Decimal> decimalOf(std::string_view digits, std::uint8_t scale, bool negative) noexcept;

// -1, 0 or 1. Scales do not matter: 1.5 equals 1.50, 0 equals -0.
int compareDecimals(const Decimal& left, const Decimal& right);

}  // namespace velmor::automation::portable
