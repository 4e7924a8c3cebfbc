#include "automation/DecimalNumber.h"

#include <algorithm>
#include <array>

namespace velmor::automation::portable {

std::string digitsOf(const Decimal& decimal) {
    std::array<std::uint32_t, 3> words{decimal.high, static_cast<std::uint32_t>(decimal.low >> 32),
                                       static_cast<std::uint32_t>(decimal.low)};
    std::string reversed;
    do {
        std::uint64_t remainder = 0;  // of the division by ten
        for (std::uint32_t& word : words) {
            remainder = remainder << 32 | word;
            word = static_cast<std::uint32_t>(remainder / 10);
            remainder %= 10;
        }
        reversed += static_cast<char>('0' + remainder);
    } while (std::ranges::any_of(words, [](std::uint32_t word) { return word != 0; }));
    return {reversed.rbegin(), reversed.rend()};
}

std::optional<Decimal> decimalOf(std::string_view digits, std::uint8_t scale, bool negative) noexcept {
    std::array<std::uint32_t, 3> words{};  // least first
    for (const char digit : digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (std::uint32_t& word : words) {
            carry += std::uint64_t{word} * 10;
            word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0) return std::nullopt;
    }
    const std::uint64_t low = std::uint64_t{words[1]} << 32 | words[0];
    return Decimal{words[2], low, scale, negative && (words[2] != 0 || low != 0)};
}

namespace {

// The digits with 28 decimals, all of one length, so that they compare as texts.
std::string alignedDigits(const Decimal& decimal) {
    constexpr std::size_t decimals = 28, most = 29 + decimals;
    std::string digits = digitsOf(decimal);
    digits.append(decimals - std::min<std::size_t>(decimals, decimal.scale), '0');
    return std::string(most - digits.size(), '0') + digits;
}

}  // namespace

int compareDecimals(const Decimal& left, const Decimal& right) {
    const std::string leftDigits = alignedDigits(left), rightDigits = alignedDigits(right);
    const int order = leftDigits.compare(rightDigits);
    const bool bothZero = order == 0 && leftDigits.find_first_not_of('0') == leftDigits.npos;
    if (left.negative != right.negative && !bothZero) return left.negative ? -1 : 1;
    return left.negative ? (order < 0) - (order > 0) : (order > 0) - (order < 0);
}

}  // namespace velmor::automation::portable
