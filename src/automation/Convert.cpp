#include "automation/Convert.h"

#include <algorithm>

#include "automation/PlatformConversions.h"
#include "text/Characters.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace velmor::automation {

namespace {

const PlatformConversions* installed = nullptr;

bool isConvertible(const Variant& value) {
    constexpr VariantType others[] = {VariantType::null, VariantType::error, VariantType::dataObject,
                                      VariantType::userDefined, VariantType::array};
    return std::ranges::count(others, value.type()) == 0;
}

bool isTrueWord(std::u16string_view text) {
    constexpr std::u16string_view words[] = {u"true", u"yes", u"y", u"t", u"on"};
    const std::u16string_view bare = trimmed(text, u" ");
    return std::ranges::any_of(words, [&](std::u16string_view word) { return equalIgnoringCase(bare, word); });
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

template <auto portableForm>
auto converted(const Variant& value) -> decltype(portableForm(value)) {
    using Target = typename decltype(portableForm(value))::value_type;
    Variant kept;
    const Variant* const plain = plainValue(value, kept);
    if (plain == nullptr) return std::nullopt;
    if (const auto* same = plain->get<Target>()) return *same;
    if (!isConvertible(*plain)) return std::nullopt;
    if (installed == nullptr) return portableForm(*plain);
    const auto result = installed->convert(*plain, Variant(Target{}).type());
    const auto* target = result ? result->get<Target>() : nullptr;
    return target != nullptr ? std::optional(*target) : std::nullopt;
}

template std::optional<std::int32_t> converted<portable::toLong>(const Variant& value);
template std::optional<std::int16_t> converted<portable::toInteger>(const Variant& value);
template std::optional<double> converted<portable::toDouble>(const Variant& value);
template std::optional<float> converted<portable::toSingle>(const Variant& value);
template std::optional<bool> converted<portable::toBoolean>(const Variant& value);
template std::optional<Currency> converted<portable::toCurrency>(const Variant& value);
template std::optional<Decimal> converted<portable::toDecimal>(const Variant& value);
template std::optional<Date> converted<portable::toDate>(const Variant& value);
template std::optional<std::u16string> converted<portable::toText>(const Variant& value);

std::u16string textOrError(const Variant& value) {
    std::optional<std::u16string> text = toText(value);
    if (!text) throw Error(13);
    return *std::move(text);
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
