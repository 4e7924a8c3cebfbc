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

// The digits with 28 decimals, so that two of them compare as texts of equal length do.
std::string alignedDigits(const Decimal& decimal) {
    std::string digits = Magnitude::of(decimal).digits();
    digits.append(28u - std::min<std::size_t>(28, decimal.scale), '0');
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

}  // namespace

int compareDecimals(const Decimal& left, const Decimal& right) {
    const std::string leftDigits = alignedDigits(left);
    const std::string rightDigits = alignedDigits(right);
    if (leftDigits.empty() && rightDigits.empty()) return 0;
    const bool leftNegative = left.negative && !leftDigits.empty();
    const bool rightNegative = right.negative && !rightDigits.empty();
    if (leftNegative != rightNegative) return leftNegative ? -1 : 1;
    int order = leftDigits.size() < rightDigits.size() ? -1 : leftDigits.size() > rightDigits.size() ? 1 : 0;
    if (order == 0) order = leftDigits.compare(rightDigits);
    order = order < 0 ? -1 : order > 0 ? 1 : 0;
    return leftNegative ? -order : order;
}

}  // namespace velmor::automation::portable
