#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>

#include "automation/NumberText.h"
#include "automation/Portable.h"
#include "text/Compare.h"

namespace velmor::automation::portable {

namespace {

constexpr double currencyUnit = 10000;
constexpr double firstDay = -657434;  // 1 January 100
constexpr double afterLastDay = 2958466;

template <class Integer>
std::optional<Integer> narrowed(std::int64_t value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max()) return std::nullopt;
    return static_cast<Integer>(value);
}

// The text's number; a value in another radix is given as digits, too.
std::optional<ParsedNumber> decimalDigitsOf(std::u16string_view text) {
    auto number = parseNumberText(text);
    if (!number || !number->radixValue) return number;
    const bool negative = number->negative;
    number = parseNumberText(numberText(*number->radixValue));
    number->negative = number->negative != negative;
    return number;
}

// The value times 10 to the power of `decimals`, rounded half to even from its exact expansion.
std::optional<std::int64_t> scaledDouble(double value, int decimals) {
    // Also false for what is no number. 2^63 and more fails below.
    if (!(std::fabs(value) < 1e19)) return std::nullopt;
    std::array<char, 32> buffer;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals).ptr;
    const auto digitsEnd = std::remove(buffer.data(), end, '.');
    std::int64_t scaled = 0;
    const auto result = std::from_chars(buffer.data(), digitsEnd, scaled);
    return result.ec == std::errc() ? std::optional(scaled) : std::nullopt;
}

// A 64-bit whole number of the value times 10 to the power of `decimals` (0 or 4).
struct ToScaled {
    int decimals;

    std::optional<std::int64_t> operator()(Empty) const { return 0; }
    std::optional<std::int64_t> operator()(bool value) const { return scaled(value ? -1 : 0); }
    std::optional<std::int64_t> operator()(const std::integral auto& value) const { return scaled(value); }
    std::optional<std::int64_t> operator()(const std::floating_point auto& value) const {
        return scaledDouble(value, decimals);
    }
    std::optional<std::int64_t> operator()(Date value) const { return (*this)(value.days); }
    std::optional<std::int64_t> operator()(Currency value) const {
        return decimals == 4 ? value.scaled : (*this)(numberText(value));
    }
    std::optional<std::int64_t> operator()(const Decimal& value) const { return (*this)(numberText(value)); }
    std::optional<std::int64_t> operator()(const std::u16string& value) const {
        const auto number = decimalDigitsOf(value);
        return number ? integerOf(*number, decimals) : std::nullopt;
    }
    std::optional<std::int64_t> operator()(const auto&) const { return std::nullopt; }

private:
    std::int64_t scaled(std::int64_t value) const { return decimals == 0 ? value : value * 10000; }
};

struct ToDouble {
    std::optional<double> operator()(Empty) const { return 0; }
    std::optional<double> operator()(bool value) const { return value ? -1 : 0; }
    std::optional<double> operator()(const std::integral auto& value) const { return value; }
    std::optional<double> operator()(const std::floating_point auto& value) const { return value; }
    std::optional<double> operator()(Date value) const { return value.days; }
    std::optional<double> operator()(Currency value) const { return static_cast<double>(value.scaled) / currencyUnit; }
    std::optional<double> operator()(const Decimal& value) const { return parseNumber(numberText(value)); }
    std::optional<double> operator()(const std::u16string& value) const { return parseNumber(value); }
    std::optional<double> operator()(const auto&) const { return std::nullopt; }
};

struct ToText {
    std::optional<std::u16string> operator()(Empty) const { return u""; }
    std::optional<std::u16string> operator()(bool value) const { return value ? u"True" : u"False"; }
    std::optional<std::u16string> operator()(const std::integral auto& value) const {
        return numberText(std::int32_t{value});
    }
    std::optional<std::u16string> operator()(const std::floating_point auto& value) const { return numberText(value); }
    std::optional<std::u16string> operator()(Date value) const { return dateText(value); }
    std::optional<std::u16string> operator()(Currency value) const { return numberText(value); }
    std::optional<std::u16string> operator()(const Decimal& value) const { return numberText(value); }
    std::optional<std::u16string> operator()(const std::u16string& value) const { return value; }
    std::optional<std::u16string> operator()(const auto&) const { return std::nullopt; }
};

template <class Integer>
std::optional<Integer> toWhole(const Variant& value) {
    const auto whole = value.visit(ToScaled{0});
    return whole ? narrowed<Integer>(*whole) : std::nullopt;
}

}  // namespace

std::optional<std::int32_t> toLong(const Variant& value) {
    return toWhole<std::int32_t>(value);
}

std::optional<std::int16_t> toInteger(const Variant& value) {
    const auto* text = value.get<std::u16string>();
    const auto number = text != nullptr ? parseNumberText(*text) : std::nullopt;
    if (!number || !number->radixValue) return toWhole<std::int16_t>(value);
    // Hexadecimal and octal texts are 16 bits here: "&HFFFF" is -1.
    if (*number->radixValue < 0 || *number->radixValue > 0xFFFF) return std::nullopt;
    const auto bits = static_cast<std::int16_t>(*number->radixValue);
    return number->negative ? narrowed<std::int16_t>(-std::int64_t{bits}) : bits;
}

std::optional<double> toDouble(const Variant& value) {
    return value.visit(ToDouble{});
}

std::optional<float> toSingle(const Variant& value) {
    if (const auto* single = value.get<float>()) return *single;
    const auto number = toDouble(value);
    // What rounds to the largest single still converts.
    constexpr double tooLarge = 0x1.ffffffp127;
    if (!number || !(std::fabs(*number) < tooLarge)) return std::nullopt;
    return static_cast<float>(*number);
}

std::optional<bool> toBoolean(const Variant& value) {
    if (const auto* text = value.get<std::u16string>()) {
        const auto is = [&](std::u16string_view word) { return equalIgnoringCase(*text, word); };
        if (is(u"True") || is(u"#TRUE#")) return true;
        if (is(u"False") || is(u"#FALSE#")) return false;
    }
    const auto number = toDouble(value);
    return number ? std::optional(*number != 0) : std::nullopt;
}

std::optional<Currency> toCurrency(const Variant& value) {
    const auto scaled = value.visit(ToScaled{4});
    return scaled ? std::optional(Currency{*scaled}) : std::nullopt;
}

std::optional<Decimal> toDecimal(const Variant& value) {
    if (const auto* decimal = value.get<Decimal>()) return *decimal;
    const bool hasOtherText = value.isEmpty() || value.get<bool>() != nullptr || value.get<Date>() != nullptr;
    const auto text = hasOtherText ? numberText(*toDouble(value)) : toText(value);
    const auto number = text ? decimalDigitsOf(*text) : std::nullopt;
    return number ? decimalOf(*number) : std::nullopt;
}

std::optional<Date> toDate(const Variant& value) {
    if (const auto* text = value.get<std::u16string>()) return parseDate(*text);
    const auto days = toDouble(value);
    if (!days || !(*days > firstDay - 1 && *days < afterLastDay)) return std::nullopt;
    return Date{*days};
}

std::optional<std::u16string> toText(const Variant& value) {
    return value.visit(ToText{});
}

std::optional<double> parseNumber(std::u16string_view text) {
    const auto number = parseNumberText(text);
    return number ? doubleOf(*number) : std::nullopt;
}

}  // namespace velmor::automation::portable
