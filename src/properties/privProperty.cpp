#include "properties/privProperty.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "automation/Convert.h"
#include "platform/Services.h"
#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;
using automation::VariantType;

namespace {

// The converted value; 0 if it does not convert or memory runs out.
template <auto convert>
auto orZero(const privProperty& property) {
    using Converted = typename decltype(convert(Variant()))::value_type;
    try {
        return convert(property.Value()).value_or(Converted{});
    } catch (const std::bad_alloc&) {
        return Converted{};
    }
}

using Waiting = std::vector<std::shared_ptr<void>>;
thread_local Waiting* waiting = nullptr;

// Releases a reference without recursion: releases during another one are postponed until it is done. However
// deep collections nest, destroying them takes constant stack.
void releaseFlat(std::shared_ptr<void> reference) {
    if (reference == nullptr) return;
    if (waiting != nullptr) {
        waiting->push_back(std::move(reference));
        return;
    }
    Waiting list;
    waiting = &list;
    reference.reset();
    while (!list.empty()) {
        const std::shared_ptr<void> next = std::move(list.back());
        list.pop_back();
    }
    waiting = nullptr;
}

}  // namespace

privProperty::privProperty(Key, platform::Services& services, std::u16string name, Variant&& value, Date now)
    : services_(services), name_(std::move(name)), value_(std::move(value)), created_(now), modified_(now) {}

// Nested collections are released one after another, not one inside the other.
privProperty::~privProperty() {
    if (auto* const object = value_.get<ObjectRef>()) releaseFlat(std::move(*object));
    if (extras_ == nullptr) return;
    for (Children& each : extras_->children) releaseFlat(std::move(each.built));
}

Variant privProperty::Value() const {
    return builder() != nullptr ? Variant(builder()->contiguous()) : value_;
}

void privProperty::Value(Variant pvValue) {
    SetValueQuiet(std::move(pvValue));
    touch();
    changed_ = true;
}

void privProperty::SetValue(Variant poValue) {
    if (!poValue.isObject()) return Value(std::move(poValue));
    SetValueQuiet(std::move(poValue));
    touch();
}

std::int32_t privProperty::ValueType() const {
    return builder() != nullptr ? static_cast<std::int32_t>(VariantType::string) : value_.typeCode();
}

std::u16string privProperty::ValueTypeName() const {
    return builder() != nullptr ? u"String" : automation::typeNameOf(value_);
}

void privProperty::Encoding(std::int32_t plEncoding) noexcept {
    const bool known = plEncoding == 1 || plEncoding == 2 || plEncoding == 4 || plEncoding == 8;
    encoding_ = known ? static_cast<std::uint8_t>(plEncoding) : 0;
}

std::int32_t privProperty::ValueLng() const {
    if (const auto* value = value_.get<std::int32_t>(); value != nullptr && builder() == nullptr) return *value;
    return orZero<automation::toLong>(*this);
}

std::u16string privProperty::ValueStr() const {
    if (builder() != nullptr) return std::u16string(builder()->contiguous());
    if (const auto* text = value_.get<std::u16string>()) return *text;
    return automation::toText(value_).value_or(std::u16string());
}

Date privProperty::ValueDate(std::int32_t plLocaleID, std::int32_t plFlags) const {
    constexpr VariantType numbers[] = {VariantType::integer,     VariantType::longInteger, VariantType::single,
                                       VariantType::doubleFloat, VariantType::currency,    VariantType::date,
                                       VariantType::decimal};
    const Variant value = Value();
    std::optional<Date> date;
    if (std::ranges::count(numbers, value.type()) > 0) date = automation::toDate(value);
    if (const auto* text = value.get<std::u16string>(); text != nullptr && automation::parseDate(*text)) {
        date =
            automation::parseDate(*text, static_cast<std::uint32_t>(plLocaleID), static_cast<std::uint32_t>(plFlags));
    }
    return date.value_or(Date{});
}

bool privProperty::ValueTrue(const Variant& pvTrueValue) const {
    if (pvTrueValue.isMissing()) return ValueBoolean();
    return automation::equalValues(Value(), pvTrueValue).value_or(false);
}

bool privProperty::ValueBoolean() const {
    return automation::truth(Value());
}

double privProperty::ValueDbl() const {
    return orZero<automation::toDouble>(*this);
}

float privProperty::ValueSng() const {
    return orZero<automation::toSingle>(*this);
}

std::int16_t privProperty::ValueInt() const {
    return orZero<automation::toInteger>(*this);
}

void privProperty::SetValueQuiet(Variant&& pvValue) {
    value_ = std::move(pvValue);
    if (extras_ != nullptr) extras_->builder.reset();
}

std::shared_ptr<privStrCat> privProperty::StrCatValue() {
    std::shared_ptr<privStrCat>& builder = extras().builder;
    if (!builder) builder = std::make_shared<privStrCat>();
    return builder;
}

void privProperty::touch() {
    modified_ = services_.clock.now();
}

// ---- The child collections: text until the first read, then a collection

privProperty::Extras& privProperty::extras() {
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    return *extras_;
}

std::shared_ptr<privProperties> privProperty::built(Child which) {
    Children& children = extras().of(which);
    if (children.built == nullptr) {
        children.built = std::make_shared<privProperties>(services_);
        children.built->Build(children.text);
        children.text = {};
    }
    return children.built;
}

bool privProperty::has(Child which) const {
    if (extras_ == nullptr) return false;
    const Children& children = extras_->of(which);
    return children.built != nullptr ? children.built->Count() > 0 : !children.text.empty();
}

void privProperty::keepChild(Child which, std::u16string text) {
    extras().of(which) = {std::move(text), nullptr};
}

// At the limit children count as empty; they are not even built, for text can nest deeper than
// anything that is worth a count.
std::int32_t privProperty::withChildren(std::int32_t own, int level, std::int32_t (privProperties::*sum)(int) const) {
    if (extras_ == nullptr || level >= privProperties::maximumNesting) return own;
    for (const Child which : {Child::attributes, Child::properties}) {
        if (has(which)) own = checkedLong(std::int64_t{own} + (*built(which).*sum)(level + 1));
    }
    return own;
}

}  // namespace velmor
