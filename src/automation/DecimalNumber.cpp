#include "automation/DecimalNumber.h"

#include <algorithm>

namespace velmor::automation::portable {

Magnitude Magnitude::of(const Decimal& decimal) noexcept {
    Magnitude magnitude;
    magnitude.words_ = {static_cast<std::uint32_t>(decimal.low), static_cast<std::uint32_t>(decimal.low >> 32),
                        decimal.high};
    return magnitude;
}

std::optional<Magnitude> Magnitude::parse(std::string_view digits) noexcept {
    Magnitude magnitude;
    for (const char digit : digits) {
        if (!magnitude.multiplyAdd(10, static_cast<std::uint32_t>(digit - '0'))) return std::nullopt;
    }
    return magnitude;
}

std::string Magnitude::digits() const {
    Magnitude rest = *this;
    std::string reversed;
    do {
        std::uint32_t block = rest.divide(1'000'000'000);
        for (int digit = 0; digit < 9; ++digit, block /= 10) reversed += static_cast<char>('0' + block % 10);
    } while (!rest.isZero());
    while (reversed.size() > 1 && reversed.back() == '0') reversed.pop_back();
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

Decimal Magnitude::decimal(std::uint8_t scale, bool negative) const noexcept {
    return {words_[2], static_cast<std::uint64_t>(words_[1]) << 32 | words_[0], scale, negative && !isZero()};
}

bool Magnitude::multiplyAdd(std::uint32_t factor, std::uint32_t summand) noexcept {
    std::uint64_t carry = summand;
    for (std::uint32_t& word : words_) {
        carry += static_cast<std::uint64_t>(word) * factor;
        word = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    return carry == 0;
}

std::uint32_t Magnitude::divide(std::uint32_t divisor) noexcept {
    std::uint64_t remainder = 0;
    for (auto word = words_.rbegin(); word != words_.rend(); ++word) {
        remainder = remainder << 32 | *word;
        *word = static_cast<std::uint32_t>(remainder / divisor);
        remainder %= divisor;
    }
    return static_cast<std::uint32_t>(remainder);
}

namespace {

// The digits with 28 decimals, all of one length, so that they compare as texts.
std::string alignedDigits(const Decimal& decimal) {
    constexpr std::size_t decimals = 28, most = 29 + decimals;
    std::string digits = Magnitude::of(decimal).digits();
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
