#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"

namespace velmor::automation::portable {

// The 96-bit whole number of a Decimal.
class Magnitude {
public:
    static Magnitude of(const Decimal& decimal) noexcept;
    // Nothing when it needs more than 96 bits. Digits only.
    static std::optional<Magnitude> parse(std::string_view digits) noexcept;

    std::string digits() const;  // no leading zeros; "0" for zero
    Decimal decimal(std::uint8_t scale, bool negative) const noexcept;

private:
    bool multiplyAdd(std::uint32_t factor, std::uint32_t summand) noexcept;  // false: overflow
    std::uint32_t divide(std::uint32_t divisor) noexcept;                    // the remainder
    bool isZero() const noexcept { return words_[0] == 0 && words_[1] == 0 && words_[2] == 0; }

    std::array<std::uint32_t, 3> words_{};  // least first
};

// -1, 0 or 1. Scales do not matter: 1.5 equals 1.50, 0 equals -0.
int compareDecimals(const Decimal& left, const Decimal& right);

}  // namespace velmor::automation::portable
