#include "properties/TypedText.h"

#include <limits>
#include <optional>
#include <string>

#include "automation/Convert.h"
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

template <class T>
std::optional<Variant> wrap(std::optional<T> converted) {
    return converted ? std::optional<Variant>(*converted) : std::nullopt;
}

bool isFraction(std::u16string_view number) {
    return number.find(u'.') != number.npos;
}

// The number in the type that the character asks for; nothing when it does not fit.
std::optional<Variant> suffixed(std::u16string_view body, char16_t type) {
    if (const auto integer = type == u'&' ? plainInteger(body) : std::nullopt) return *integer;
    const bool decimal = type == u'!' && body.starts_with(u'!');
    if (decimal) body.remove_prefix(1);
    const auto value = automation::parseNumber(body);
    if (!value) return std::nullopt;
    if (type == u'#' || (isFraction(body) && (type == u'&' || type == u'%'))) return *value;
    const Variant number{body};
    switch (type) {
        case u'&':
            return wrap(automation::toLong(number));
        case u'%':
            return wrap(automation::toInteger(number));
        case u'!':
            return decimal ? wrap(automation::toDecimal(number)) : wrap(automation::toSingle(number));
        default:
            return wrap(automation::toCurrency(number));
    }
}

std::optional<Variant> untyped(std::u16string_view text) {
    const auto number = automation::parseNumber(text);
    if (!number) return std::nullopt;
    if (isFraction(text)) return *number;
    if (*number >= std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    return wrap(automation::toLong(Variant(text)));
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
