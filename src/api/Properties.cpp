#include <algorithm>
#include <optional>

#include "api/PropertiesParts.h"
#include "automation/Portable.h"
#include "automation/Variant.h"
#include "common/DocumentText.h"
#include "common/TextFile.h"
#include "platform/SystemServices.h"
#include "properties/privProperty.h"
#include "text/Characters.h"
#include "text/Encoding.h"

namespace velmor {

using automation::Variant;

platform::Services& api::machine() {
    static auto* const instance = new platform::SystemServices({{}, {}, true});
    return instance->services();
}

namespace {

std::optional<automation::Decimal> decimalOf(std::u16string_view digits) {
    constexpr std::ptrdiff_t mostDigits = 28;
    const std::u16string_view number = digits.substr(digits.starts_with(u'-') ? 1 : 0);
    const std::ptrdiff_t count =
        std::count_if(number.begin(), number.end(), [](char16_t unit) { return isDigit(unit); });
    const auto points = static_cast<std::size_t>(std::count(number.begin(), number.end(), u'.'));
    if (count == 0 || count > mostDigits || points > 1) return std::nullopt;
    if (static_cast<std::size_t>(count) + points != number.size()) return std::nullopt;
    return automation::portable::toDecimal(Variant(digits));
}

}  // namespace

inline namespace v1 {

std::string utf8(std::u16string_view text) {
    return toUtf8(text);
}

std::u16string utf16(std::string_view bytes) {
    return fromUtf8(bytes);
}

std::u16string documentText(std::string_view bytes) {
    return decodeTextFileOrUtf8(bytes);
}

std::string documentBytes(std::u16string_view text) {
    return encodeDocument(text, TextEncoding::utf8);
}

Properties::Properties() : parts_(std::make_unique<Parts>(std::make_shared<privProperties>(api::machine()))) {}
Properties::Properties(std::unique_ptr<Parts> parts) noexcept : parts_(std::move(parts)) {}
Properties::~Properties() = default;
Properties::Properties(Properties&&) noexcept = default;
Properties& Properties::operator=(Properties&&) noexcept = default;

void Properties::setText(const TextIn& name, const TextIn& value) {
    parts_->items->SetText(name.view(), value.view());
}

void Properties::setNumber(const TextIn& name, std::int32_t value) {
    parts_->items->Add(name.view(), value, true);
}

void Properties::setNumber(const TextIn& name, double value) {
    parts_->items->Add(name.view(), value, true);
}

void Properties::setTruth(const TextIn& name, bool value) {
    parts_->items->Add(name.view(), value, true);
}

void Properties::setDate(const TextIn& name, double days) {
    parts_->items->Add(name.view(), automation::Date{days}, true);
}

void Properties::setProperties(const TextIn& name, const Properties& value) {
    const PropertyRef property = parts_->items->Add(name.view(), u"", true);
    if (property) property->Properties()->Build(value.parts_->items->Stored());
}

bool Properties::setDecimal(const TextIn& name, const TextIn& digits) {
    const auto value = decimalOf(digits.view());
    if (value) parts_->items->Add(name.view(), *value, true);
    return value.has_value();
}

void Properties::setNull(const TextIn& name) {
    parts_->items->Add(name.view(), automation::Null{}, true);
}

Properties Properties::addChild(const TextIn& name) {
    const PropertyRef property = parts_->items->Add(name.view(), u"", true);
    return Properties(std::make_unique<Parts>(property->Properties()));
}

bool Properties::remove(const TextIn& name) {
    if (!parts_->items->Item(name.view())) return false;
    parts_->items->Remove(Variant(name.view()));
    return true;
}

std::optional<std::u16string> Properties::text(const TextIn& name) const {
    const PropertyRef property = parts_->items->Item(name.view());
    return property ? std::optional(property->ValueStr()) : std::nullopt;
}

std::size_t Properties::size() const noexcept {
    return static_cast<std::size_t>(parts_->items->Count());
}

std::u16string Properties::nameAt(std::size_t index) const {
    const PropertyRef property = parts_->items->Item(static_cast<std::int32_t>(index + 1));
    return property ? std::u16string(property->Name()) : std::u16string();
}

std::u16string Properties::toText() const {
    return parts_->items->Stored();
}

Properties Properties::fromText(const TextIn& text) {
    Properties properties;
    properties.parts_->items->Build(text.view());
    return properties;
}

Outcome<Properties> Properties::fromFile(const TextIn& path, const TextIn& password) {
    Properties properties;
    if (properties.parts_->items->LoadFromFile(path.view(), password.view())) return properties;
    return Failure{53, std::u16string(u"The file \"").append(path.view()).append(u"\" cannot be read")};
}

}  // namespace v1
}  // namespace velmor
