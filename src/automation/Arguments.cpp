#include "automation/Arguments.h"

#include "automation/Errors.h"

namespace velmor::automation {

void Arguments::raiseUnfit(std::size_t index) const {
    constexpr std::int32_t overflow = 6, typeMismatch = 13;
    throw ArgumentError(toDouble(variant(index)) ? overflow : typeMismatch, index);
}

bool Arguments::has(std::size_t index) const noexcept {
    return index < values_.size() && !values_[index].isMissing();
}

const Variant& Arguments::variant(std::size_t index) const noexcept {
    static const Variant missingValue = Variant::missing();
    return index < values_.size() ? values_[index] : missingValue;
}

TextArgument Arguments::textArgument(std::size_t index) const {
    if (const auto* text = variant(index).get<std::u16string>()) return TextArgument(std::u16string_view(*text));
    return TextArgument(fit(index, toText));
}

ObjectRef Arguments::object(std::size_t index) const {
    if (!has(index) || variant(index).get<Null>()) return nullptr;
    if (!variant(index).isObject()) throw ArgumentError(13, index);
    return variant(index).object();
}

void Arguments::set(std::size_t index, Variant value) {
    if (index < values_.size()) values_[index] = std::move(value);
}

void Arguments::putBack(std::size_t index, TextReference& text) {
    std::u16string* const made = text.made();
    if (!made || index >= values_.size()) return;
    if (values_[index].isString() || *made != std::u16string_view(textArgument(index))) set(index, std::move(*made));
}

void Arguments::putBack(std::size_t index, std::int32_t number) {
    if (has(index) && number != longInteger(index)) set(index, number);
}

}  // namespace velmor::automation
