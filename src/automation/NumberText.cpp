#include "automation/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace velmor::automation::portable {

namespace {

std::u16string widened(std::string_view text) {
    return std::u16string(text.begin(), text.end());
}

// Of the whole number that a Decimal divides: no leading zeros, "0" for zero.
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

// The digits with 28 decimals, all of one length, so that they compare as texts.
std::string alignedDigits(const Decimal& decimal) {
    constexpr std::size_t decimals = 28, most = 29 + decimals;
    std::string digits = digitsOf(decimal);
    digits.append(decimals - std::min<std::size_t>(decimals, decimal.scale), '0');
    return std::string(most - digits.size(), '0') + digits;
}

// A whole number, given as its digits, with a point before the last `decimals` of them, or so many zeros after them.
std::u16string pointedText(bool negative, std::string digits, int decimals) {
    const int size = static_cast<int>(digits.size());
    if (decimals < 0) digits.append(static_cast<std::size_t>(-decimals), '0');
    if (decimals >= size) digits.insert(0, static_cast<std::size_t>(decimals + 1 - size), '0');
    if (decimals > 0) {
        digits.insert(digits.size() - static_cast<std::size_t>(decimals), ".");
        digits.erase(digits.find_last_not_of('0') + 1);
        if (digits.back() == '.') digits.pop_back();
    }
    return widened(negative && digits != "0" ? "-" + digits : digits);
}

// A positive number: d.ddd times 10 to the exponent.
struct Rounded {
    std::string digits;
    int exponent;
};

// Ties round away from zero. No double is so near to a tie that 40 digits do not show on which side it is.
Rounded rounded(double value, std::size_t significant) {
    std::array<char, 64> buffer{};
    std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, 40);
    const std::string_view written = buffer.data();
    int exponent = std::atoi(buffer.data() + written.find('e') + 1);
    std::string digits(1, written[0]);
    digits.append(written, 2, significant - 1);
    if (written[significant + 1] >= '5') digits = nextNumber(std::move(digits));
    if (digits.size() > significant) ++exponent;  // 99..9 became 100..0
    digits.erase(digits.find_last_not_of('0') + 1);
    return {std::move(digits), exponent};
}

std::u16string floatText(double value, int significant) {
    if (value == 0) return u"0";
    if (std::isnan(value)) return u"-1.#IND";
    if (std::isinf(value)) return value < 0 ? u"-1.#INF" : u"1.#INF";
    auto [digits, exponent] = rounded(std::fabs(value), static_cast<std::size_t>(significant));
    const bool plain = exponent >= -4 && exponent < significant;
    const int decimals = static_cast<int>(digits.size()) - 1 - exponent;
    if (plain) return pointedText(value < 0, std::move(digits), decimals);
    if (digits.size() > 1) digits.insert(1, ".");
    if (value < 0) digits.insert(0, "-");
    digits += exponent < 0 ? "E-" : "E+";
    if (std::abs(exponent) < 10) digits += '0';
    return widened(digits + std::to_string(std::abs(exponent)));
}

}  // namespace

std::string nextNumber(std::string digits) {
    std::size_t at = digits.size();
    while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
    if (at == 0) return "1" + digits;
    ++digits[at - 1];
    return digits;
}

std::u16string numberText(double value) {
    return floatText(value, 15);
}

std::u16string numberText(float value) {
    return floatText(value, 7);
}

std::u16string numberText(std::int32_t value) {
    return widened(std::to_string(value));
}

std::u16string numberText(Currency value) {
    const auto bits = static_cast<std::uint64_t>(value.scaled);
    return pointedText(value.scaled < 0, std::to_string(value.scaled < 0 ? 0 - bits : bits), 4);
}

std::u16string numberText(Decimal value) {
    return pointedText(value.negative, digitsOf(value), value.scale);
}

std::weak_ordering compareDecimals(const Decimal& left, const Decimal& right) {
    const std::string leftDigits = alignedDigits(left), rightDigits = alignedDigits(right);
    const bool bothZero = leftDigits == rightDigits && leftDigits.find_first_not_of('0') == leftDigits.npos;
    if (left.negative != right.negative && !bothZero) return right.negative <=> left.negative;
    return left.negative ? rightDigits <=> leftDigits : leftDigits <=> rightDigits;
}

}  // namespace velmor::automation::portable
