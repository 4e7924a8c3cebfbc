#include <compare>

#include "automation/NumberText.h"
#include "automation/Portable.h"

namespace velmor::automation::portable {

namespace {

bool isNumber(const Variant& value) {
    return !value.isString() && toDouble(value);
}

template <class Number>
bool eitherIs(const Variant& left, const Variant& right) {
    return left.get<Number>() != nullptr || right.get<Number>() != nullptr;
}

// In the precision of the one that has less, so that the single 0.1 equals the double 0.1.
bool equalNumbers(const Variant& left, const Variant& right) {
    if (eitherIs<Decimal>(left, right)) {
        const auto leftDecimal = toDecimal(left);
        const auto rightDecimal = toDecimal(right);
        if (leftDecimal && rightDecimal) return std::is_eq(compareDecimals(*leftDecimal, *rightDecimal));
    } else if (eitherIs<float>(left, right)) {
        return toSingle(left) == toSingle(right);
    } else if (!eitherIs<double>(left, right) && !eitherIs<Date>(left, right)) {
        return toCurrency(left) == toCurrency(right);  // exact; whole numbers fit, too
    }
    return toDouble(left) == toDouble(right);
}

// A text equals a text, unit by unit, and the empty text equals Empty; it equals no number, not
// even the one that it spells.
std::optional<bool> equalToText(const std::u16string& text, const Variant& other) {
    if (const auto* otherText = other.get<std::u16string>()) return text == *otherText;
    if (other.isEmpty()) return text.empty();
    return isNumber(other) ? std::optional(false) : std::nullopt;
}

}  // namespace

std::optional<bool> equalValues(const Variant& left, const Variant& right) {
    if (left.type() == VariantType::null || right.type() == VariantType::null) return false;
    if (const auto* text = left.get<std::u16string>()) return equalToText(*text, right);
    if (const auto* text = right.get<std::u16string>()) return equalToText(*text, left);
    const auto* leftError = left.get<ErrorCode>();
    const auto* rightError = right.get<ErrorCode>();
    if (leftError != nullptr && rightError != nullptr) return *leftError == *rightError;
    if (!isNumber(left) || !isNumber(right)) return std::nullopt;
    return equalNumbers(left, right);
}

}  // namespace velmor::automation::portable
