#include "properties/TypedText.h"

#include <algorithm>
#include <limits>
#include <string>

#include "automation/Convert.h"
#include "automation/NumberText.h"
#include "automation/Portable.h"

namespace velmor {

using automation::Variant;

namespace {

constexpr std::size_t longestDate = 64;

namespace portable = automation::portable;

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

// The number in a type; nothing if it does not fit. This machine is asked only about a text that is
// no number elsewhere, since its decimal sign may be one of its own.
template <auto portableForm>
std::optional<Variant> numberIn(const std::u16string& text) {
    const Variant value(text);
    auto number = portableForm(value);
    if (!number && !portable::parseNumberText(text)) number = automation::converted<portableForm>(value);
    return number ? std::optional<Variant>(*number) : std::nullopt;
}

// The number in the type that the character asks for.
std::optional<Variant> suffixed(std::u16string_view body, char16_t type) {
    const bool decimal = type == u'!' && body.starts_with(u'!');
    if (decimal) body.remove_prefix(1);
    const std::u16string text = withPoint(body);
    const bool fraction = isFraction(text);
    if (decimal) return numberIn<portable::toDecimal>(text);
    if (type == u'!') return numberIn<portable::toSingle>(text);
    if (type == u'$') return numberIn<portable::toCurrency>(text);
    if (type == u'&' && !fraction) return numberIn<portable::toLong>(text);
    if (type == u'%' && !fraction) return numberIn<portable::toInteger>(text);
    return numberIn<portable::toDouble>(text);
}

// A "," may be the decimal sign or a thousands sign, unless a "." tells.
std::optional<Variant> untyped(std::u16string_view text) {
    const bool fraction = isFraction(text);
    if (!fraction && text.find(u',') != text.npos) return std::nullopt;
    const auto number = portable::parseNumber(text);
    if (!number || fraction) return number ? std::optional<Variant>(*number) : std::nullopt;
    if (*number >= std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    const auto whole = portable::toLong(Variant(text));
    return whole ? std::optional<Variant>(*whole) : std::nullopt;
}

// The written form has a day and a month name.
bool hasMonthName(std::u16string_view date) {
    const std::size_t blank = date.find(u' ');
    return blank != date.npos && blank + 1 < date.size() && date[blank + 1] >= u'A';
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
        case u'L':
            if (text == u"NUL") value = automation::Null{};
            break;
        default:
            value = untyped(text);
            break;
    }
    return value ? *std::move(value) : Variant(text);
}

bool isWrittenForm(std::u16string_view text) noexcept {
    constexpr std::size_t longestCertain = 9;  // digits of a long
    if (!text.ends_with(u'&')) return text == u"True" || text == u"False" || text == u"NUL";
    const std::u16string_view digits = text.substr(0, text.size() - 1);
    const bool inRange = !digits.empty() && digits.front() != u'0' && digits.size() <= longestCertain;
    return inRange && digits.find_first_not_of(u"0123456789") == digits.npos;
}

std::optional<automation::Date> dateOfText(std::u16string_view text) {
    if (text.size() > longestDate) return std::nullopt;
    const auto date = hasMonthName(text) ? portable::parseDate(text) : std::nullopt;
    return date ? date : automation::parseDate(text);
}

}  // namespace velmor
