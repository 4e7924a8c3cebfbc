#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"

// Numbers to text and back, digit by digit as automation does it in en-US.
namespace velmor::automation::portable {

// 15 (single: 7) significant digits, ties away from zero, no minus zero. Exponent form ("1E+15",
// "1.5E-05") from 1E+15 (1E+07) on and below 0.0001. Infinity and NaN: "1.#INF", "-1.#INF", "-1.#IND".
std::u16string numberText(double value);
std::u16string numberText(float value);
std::u16string numberText(std::int32_t value);
std::u16string numberText(Currency value);  // up to 4 decimals, no trailing zeros
std::u16string numberText(Decimal value);   // all digits, no trailing zeros after the point

// Scales do not matter: 1.5 equals 1.50, 0 equals -0.
std::weak_ordering compareDecimals(const Decimal& left, const Decimal& right);

// The digits of the whole number after this one.
std::string nextNumber(std::string digits);

// The blanks that automation ignores in numbers and dates.
constexpr bool isNumberBlank(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\u00A0' || (unit >= u'\t' && unit <= u'\r');
}

// The parts of a numeric text. Hexadecimal and octal texts come as their 32 bits in `radixValue`.
struct ParsedNumber {
    bool negative = false;
    std::string digits;         // '0'..'9', no leading zeros; empty for zero
    std::int32_t exponent = 0;  // value = 0.digits times 10 to the exponent
    std::optional<std::int32_t> radixValue;
};

// Accepts outer blanks, one sign before or after, parentheses for negative, one "$", "," in the
// whole part, an "e" exponent, "&H" and "&O" up to 32 bits. Cost: linear in the text.
std::optional<ParsedNumber> parseNumberText(std::u16string_view text);

// Nothing when the number is too large, except for the text of the largest double, which is rounded up; what is
// too small for the type is 0.
std::optional<double> doubleOf(const ParsedNumber& number);
// The following take no number in another radix. Both round half to even: the value times 10 to the
// power of `decimals`; as many decimals (28 at most) as 96 bits can hold.
std::optional<std::int64_t> integerOf(const ParsedNumber& number, int decimals);
std::optional<Decimal> decimalOf(const ParsedNumber& number);

}  // namespace velmor::automation::portable
