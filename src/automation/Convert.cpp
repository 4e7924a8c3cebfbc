#include "automation/Convert.h"

#include <algorithm>
#include <array>

#include "automation/NumberText.h"
#include "automation/PlatformConversions.h"
#include "automation/Portable.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor::automation {

namespace {

const PlatformConversions* installed = nullptr;

bool isConvertible(const Variant& value) {
    switch (value.type()) {
        case VariantType::null:
        case VariantType::error:
        case VariantType::dataObject:
        case VariantType::userDefined:
        case VariantType::array:
            return false;
        default:
            return true;
    }
}

template <class Target>
std::optional<Target> convertPlain(const Variant& value, VariantType target,
                                   std::optional<Target> (*portableForm)(const Variant&)) {
    if (const auto* same = value.get<Target>()) return *same;
    if (!isConvertible(value)) return std::nullopt;
    if (installed == nullptr) return portableForm(value);
    const auto converted = installed->convert(value, target);
    const auto* result = converted ? converted->get<Target>() : nullptr;
    return result != nullptr ? std::optional(*result) : std::nullopt;
}

template <class Target>
std::optional<Target> convert(const Variant& value, VariantType target,
                              std::optional<Target> (*portableForm)(const Variant&)) {
    Variant kept;
    const Variant* const plain = plainValue(value, kept);
    return plain != nullptr ? convertPlain(*plain, target, portableForm) : std::nullopt;
}

bool isTrueWord(std::u16string_view text) {
    while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    constexpr std::array<std::u16string_view, 5> kWords{u"true", u"yes", u"y", u"t", u"on"};
    for (const auto word : kWords) {
        if (equalIgnoringCase(text, word)) return true;
    }
    return false;
}

}  // namespace

void installPlatformConversions(const PlatformConversions* conversions) noexcept {
    installed = conversions;
}

const PlatformConversions* platformConversions() noexcept {
    return installed;
}

const Variant* plainValue(const Variant& value, Variant& kept) {
    const Variant* plain = &value;
    for (int level = 0; plain->isObject(); ++level) {
        const ObjectRef object = plain->object();
        if (!object || level == defaultValueLimit) return nullptr;
        try {
            kept = object->invoke(u"", InvokeKind::get, {});
        } catch (const Error&) {
            return nullptr;
        }
        plain = &kept;
    }
    return plain;
}

std::optional<std::int32_t> toLong(const Variant& value) {
    return convert(value, VariantType::longInteger, portable::toLong);
}

std::optional<std::int16_t> toInteger(const Variant& value) {
    return convert(value, VariantType::integer, portable::toInteger);
}

std::optional<double> toDouble(const Variant& value) {
    return convert(value, VariantType::doubleFloat, portable::toDouble);
}

std::optional<float> toSingle(const Variant& value) {
    return convert(value, VariantType::single, portable::toSingle);
}

std::optional<bool> toBoolean(const Variant& value) {
    return convert(value, VariantType::boolean, portable::toBoolean);
}

std::optional<Currency> toCurrency(const Variant& value) {
    return convert(value, VariantType::currency, portable::toCurrency);
}

std::optional<Decimal> toDecimal(const Variant& value) {
    return convert(value, VariantType::decimal, portable::toDecimal);
}

std::optional<Date> toDate(const Variant& value) {
    return convert(value, VariantType::date, portable::toDate);
}

std::optional<std::u16string> toText(const Variant& value) {
    return convert(value, VariantType::string, portable::toText);
}

std::u16string textOrError(const Variant& value) {
    std::optional<std::u16string> text = toText(value);
    if (!text) throw Error(13);
    return *std::move(text);
}

bool isNumeric(const Variant& value) {
    Variant kept;
    const Variant* const plain = plainValue(value, kept);
    if (plain == nullptr || !isConvertible(*plain) || plain->type() == VariantType::date) return false;
    const auto* text = plain->get<std::u16string>();
    return text == nullptr || parseNumber(*text).has_value();
}

std::optional<double> parseNumber(std::u16string_view text) {
    if (installed == nullptr) return portable::parseNumber(text);
    const Variant value(text);
    if (const auto number = toDouble(value)) return number;
    // The platform may take "&HFFFFFFFF" for a Long alone.
    const auto number = toLong(value);
    return number ? std::optional<double>(*number) : std::nullopt;
}

bool isDateText(std::u16string_view text) {
    return parseDate(text).has_value();
}

std::optional<Date> parseDate(std::u16string_view text) {
    return parseDate(text, 0, 0);
}

std::optional<Date> parseDate(std::u16string_view text, std::uint32_t localeId, std::uint32_t flags) {
    if (installed == nullptr) return portable::parseDate(text, flags);
    return installed->parseDate(text, localeId, flags);
}

std::optional<bool> equalValues(const Variant& left, const Variant& right) {
    Variant keptLeft;
    Variant keptRight;
    const Variant* const plainLeft = plainValue(left, keptLeft);
    const Variant* const plainRight = plainValue(right, keptRight);
    if (plainLeft == nullptr || plainRight == nullptr) return std::nullopt;
    const bool bothPlain = isConvertible(*plainLeft) && isConvertible(*plainRight);
    if (installed == nullptr || !bothPlain) return portable::equalValues(*plainLeft, *plainRight);
    return installed->equal(*plainLeft, *plainRight);
}

bool truth(const Variant& value) {
    Variant kept;
    const Variant* const plain = plainValue(value, kept);
    if (plain == nullptr) return false;
    const auto* text = plain->get<std::u16string>();
    if (text != nullptr && isTrueWord(*text)) return true;
    const auto number = toDouble(*plain);
    return number && *number != 0;
}

}  // namespace velmor::automation
