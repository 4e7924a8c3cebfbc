#include "properties/TypedText.h"

#include <limits>
#include <optional>
#include <string>

#include "automation/Convert.h"
#include "automation/NumberText.h"
#include "automation/Portable.h"
#include "text/Compare.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::size_t kDigitsThatFit = 9;

// The usual case, written alike everywhere: a sign and up to nine digits.
std::optional<std::int32_t> plainInteger(std::u16string_view text) {
    const bool negative = text.starts_with(u'-');
    if (negative) text.remove_prefix(1);
    if (text.empty() || text.size() > kDigitsThatFit) return std::nullopt;
    std::int32_t value = 0;
    for (const char16_t unit : text) {
        if (unit < u'0' || unit > u'9') return std::nullopt;
        value = value * 10 + (unit - u'0');
    }
    return negative ? -value : value;
}

bool isFraction(std::u16string_view number) {
    return number.find(u'.') != number.npos;
}

// A single "," is the decimal sign of the machine that wrote the number.
std::u16string withPoint(std::u16string_view number) {
    std::u16string text(number);
    const std::size_t comma = text.find(u',');
    if (comma != text.npos && comma == text.rfind(u',') && !isFraction(text)) text[comma] = u'.';
    return text;
}

using Convert = std::optional<Variant> (*)(const Variant& number);

// One conversion, as it is on every machine and as this machine has it.
struct Conversion {
    Convert portableForm, machineForm;
};

template <auto convert>
std::optional<Variant> boxed(const Variant& number) {
    const auto converted = convert(number);
    return converted ? std::optional<Variant>(*converted) : std::nullopt;
}

template <auto portableForm, auto machineForm>
constexpr Conversion conversion{boxed<portableForm>, boxed<machineForm>};

namespace here = automation;
namespace portable = automation::portable;
constexpr Conversion kLong = conversion<portable::toLong, here::toLong>;
constexpr Conversion kInteger = conversion<portable::toInteger, here::toInteger>;
constexpr Conversion kSingle = conversion<portable::toSingle, here::toSingle>;
constexpr Conversion kDouble = conversion<portable::toDouble, here::toDouble>;
constexpr Conversion kCurrency = conversion<portable::toCurrency, here::toCurrency>;
constexpr Conversion kDecimal = conversion<portable::toDecimal, here::toDecimal>;

const Conversion& conversionTo(char16_t type, bool fraction, bool decimal) {
    switch (type) {
        case u'&':
            return fraction ? kDouble : kLong;
        case u'%':
            return fraction ? kDouble : kInteger;
        case u'!':
            return decimal ? kDecimal : kSingle;
        case u'$':
            return kCurrency;
        default:
            return kDouble;
    }
}

// The number in the type that the character asks for; nothing when it does not fit. This machine
// is asked only about what is no number elsewhere: its decimal sign may be one of its own.
std::optional<Variant> suffixed(std::u16string_view body, char16_t type) {
    if (const auto integer = type == u'&' ? plainInteger(body) : std::nullopt) return *integer;
    const bool decimal = type == u'!' && body.starts_with(u'!');
    if (decimal) body.remove_prefix(1);
    const std::u16string text = withPoint(body);
    const Conversion& to = conversionTo(type, isFraction(text), decimal);
    const Variant number(text);
    auto value = to.portableForm(number);
    if (!value && !portable::parseNumberText(text)) value = to.machineForm(number);
    return value;
}

// A "," may be the decimal sign or a thousands sign, unless a "." tells.
std::optional<Variant> untyped(std::u16string_view text) {
    const bool fraction = isFraction(text);
    if (!fraction && text.find(u',') != text.npos) return std::nullopt;
    const auto number = portable::parseNumber(text);
    if (!number || fraction) return number ? std::optional<Variant>(*number) : std::nullopt;
    if (*number >= std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    return boxed<portable::toLong>(Variant(text));
}

}  // namespace

Variant typedValue(std::u16string_view text) {
    std::optional<Variant> value;
    switch (text.empty() ? u'\0' : text.back()) {
        case u'&':
        case u'%':
        case u'!':
        case u'#':
        case u'$':
            value = suffixed(text.substr(0, text.size() - 1), text.back());
            break;
        case u'e':
            if (text == u"True" || text == u"False") value = text == u"True";
            break;
        default:
            if (const auto integer = plainInteger(text)) return *integer;
            value = untyped(text);
            break;
    }
    return value ? *std::move(value) : Variant(text);
}

}  // namespace velmor
