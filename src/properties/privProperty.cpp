#include "properties/privProperty.h"

#include <new>
#include <utility>

#include "automation/Convert.h"
#include "platform/Services.h"
#include "properties/DeferredRelease.h"
#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;
using automation::VariantType;

namespace {

// What a getter gives: 0 for a value that does not convert, or that there is no memory to convert.
template <auto convert>
auto orZero(const privProperty& property) {
    using Converted = typename decltype(convert(Variant()))::value_type;
    try {
        return convert(property.Value()).value_or(Converted{});
    } catch (const std::bad_alloc&) {
        return Converted{};
    }
}

}  // namespace

privProperty::privProperty(Key, platform::Services& services, Date now)
    : services_(services), value_(std::int32_t{0}), created_(now), modified_(now) {}

// Nested collections go one after another, not one inside the other.
privProperty::~privProperty() {
    if (auto* const object = value_.get<ObjectRef>()) releaseFlat(std::move(*object));
    if (extras_ == nullptr) return;
    releaseFlat(std::move(extras_->attributes.built));
    releaseFlat(std::move(extras_->properties.built));
}

const std::u16string& privProperty::Name() const {
    if (ownName_ == nullptr) ownName_ = std::make_unique<const std::u16string>(name_);
    return *ownName_;
}

void privProperty::SetName(std::u16string psName) {
    ownName_ = std::make_unique<const std::u16string>(std::move(psName));
    name_ = *ownName_;
}

void privProperty::lendText(std::u16string_view text) noexcept {
    value_ = Variant();
    lentText_ = text;
}

const Variant& privProperty::rawValue() const {
    if (isLent()) {
        value_ = Variant(lentText_);
        lentText_ = {};
    }
    return value_;
}

std::optional<std::u16string_view> privProperty::plainText() const noexcept {
    if (isLent()) return lentText_;
    const auto* text = value_.get<std::u16string>();
    return text == nullptr ? std::nullopt : std::optional<std::u16string_view>(*text);
}

Variant privProperty::Value() const {
    if (builder()) return builder()->ReturnVal();
    return isLent() ? Variant(lentText_) : value_;
}

void privProperty::Value(Variant pvValue) {
    SetValueQuiet(std::move(pvValue));
    touch();
    changed_ = true;
}

void privProperty::SetValue(Variant poValue) {
    if (!poValue.isObject()) return Value(std::move(poValue));
    SetObjectQuiet(poValue.object());
    touch();
}

std::int32_t privProperty::ValueType() const {
    return builder() || isLent() ? static_cast<std::int32_t>(VariantType::string) : value_.typeCode();
}

std::u16string privProperty::ValueTypeName() const {
    return builder() || isLent() ? u"String" : automation::typeNameOf(value_);
}

void privProperty::Encoding(std::int32_t plEncoding) noexcept {
    const bool known = plEncoding == 1 || plEncoding == 2 || plEncoding == 4 || plEncoding == 8;
    encoding_ = known ? static_cast<std::uint8_t>(plEncoding) : 0;
}

std::int32_t privProperty::ValueLng() const {
    if (const auto* value = value_.get<std::int32_t>(); value != nullptr && !builder()) return *value;
    return orZero<automation::toLong>(*this);
}

void privProperty::ValueLng(std::int32_t plValue) {
    Value(Variant(plValue));
}

std::u16string privProperty::ValueStr() const {
    if (builder()) return builder()->ReturnVal();
    if (const auto text = plainText()) return std::u16string(*text);
    return automation::toText(value_).value_or(std::u16string());
}

void privProperty::ValueStr(std::u16string psValue) {
    Value(Variant(std::move(psValue)));
}

void privProperty::SetValueStrRef(std::u16string_view psValue) {
    Value(Variant(psValue));
}

Date privProperty::ValueDate(std::int32_t plLocaleID, std::int32_t plFlags) const {
    const Variant value = Value();
    switch (value.type()) {
        case VariantType::integer:
        case VariantType::longInteger:
        case VariantType::single:
        case VariantType::doubleFloat:
        case VariantType::currency:
        case VariantType::date:
        case VariantType::decimal:
            return automation::toDate(value).value_or(Date{});
        case VariantType::string: {
            const std::u16string& text = *value.get<std::u16string>();
            if (!automation::isDateText(text)) return {};
            return automation::parseDate(text, static_cast<std::uint32_t>(plLocaleID),
                                         static_cast<std::uint32_t>(plFlags))
                .value_or(Date{});
        }
        default:
            return {};
    }
}

void privProperty::ValueDateSet(Date pdValue) {
    Value(Variant(pdValue));
}

bool privProperty::ValueTrue(const Variant& pvTrueValue) const {
    if (pvTrueValue.isMissing()) return ValueBoolean();
    return automation::equalValues(Value(), pvTrueValue).value_or(false);
}

bool privProperty::ValueBoolean() const {
    return automation::truth(Value());
}

void privProperty::ValueBoolean(bool pbValue) {
    Value(Variant(pbValue));
}

double privProperty::ValueDbl() const {
    return orZero<automation::toDouble>(*this);
}

void privProperty::ValueDbl(double pdValue) {
    Value(Variant(pdValue));
}

float privProperty::ValueSng() const {
    return orZero<automation::toSingle>(*this);
}

void privProperty::ValueSng(float pnValue) {
    Value(Variant(pnValue));
}

std::int16_t privProperty::ValueInt() const {
    return orZero<automation::toInteger>(*this);
}

void privProperty::ValueInt(std::int16_t piValue) {
    Value(Variant(piValue));
}

void privProperty::InitValue(std::u16string psName, Variant&& pvValue, std::int32_t plEncoding, bool pbMultiple,
                             bool pbUpperCaseName) {
    SetName(pbUpperCaseName ? upperCase(psName) : std::move(psName));
    SetValueQuiet(std::move(pvValue));
    Encoding(plEncoding);
    multiple_ = pbMultiple;
    changed_ = false;
}

void privProperty::InitString(std::u16string psName, std::u16string psValue, std::int32_t plEncoding, bool pbMultiple,
                              bool pbUpperCaseName) {
    InitValue(std::move(psName), Variant(std::move(psValue)), plEncoding, pbMultiple, pbUpperCaseName);
}

void privProperty::InitObject(std::u16string psName, ObjectRef poValue, std::int32_t plEncoding, bool pbMultiple,
                              bool /*pbUpperCaseName*/) {
    InitValue(std::move(psName), Variant(std::move(poValue)), plEncoding, pbMultiple, false);
}

void privProperty::SetValueQuiet(Variant&& pvValue) {
    value_ = std::move(pvValue);
    lentText_ = {};
    if (extras_ != nullptr) extras_->builder.reset();
}

void privProperty::SetObjectQuiet(ObjectRef poValue) {
    SetValueQuiet(Variant(std::move(poValue)));
}

void privProperty::SetValueStrQuietChanged(std::u16string psValue) {
    ValueStr(std::move(psValue));
}

bool privProperty::ValueNotIn(std::u16string_view psText) const {
    return findText(ValueStr(), psText, 0, Comparison::text) == std::u16string_view::npos;
}

std::shared_ptr<privStrCat> privProperty::StrCatValue() {
    std::shared_ptr<privStrCat>& builder = extras().builder;
    if (!builder) builder = std::make_shared<privStrCat>();
    return builder;
}

void privProperty::SetStrCatValue(std::shared_ptr<privStrCat> poBuilder) {
    extras().builder = std::move(poBuilder);
}

void privProperty::touch() {
    modified_ = services_.clock.now();
}

}  // namespace velmor
