#include "properties/privProperties.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "automation/Convert.h"
#include "common/Cipher.h"
#include "common/TextFile.h"
#include "platform/Services.h"
#include "properties/KeyedItems.h"
#include "properties/Overflow.h"
#include "properties/PropertyEnumerator.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;

privProperties::privProperties(platform::Services& services) : services_(services) {}

privProperties::~privProperties() = default;

KeyedItems& privProperties::items() const {
    if (!items_) items_ = std::make_shared<KeyedItems>(services_);
    return *items_;
}

PropertyRef privProperties::Add(std::u16string_view psName, Variant pvValue, bool pbReplaceOriginal) {
    PropertyRef found = pbReplaceOriginal ? items().find(psName) : nullptr;
    if (found == nullptr) return items().insert(items().size(), psName, std::move(pvValue));
    found->Value(std::move(pvValue));
    found->Changed(false);
    return found;
}

void privProperties::SetText(std::u16string_view psName, std::u16string_view psValue) {
    if (!items().addText(psName, psValue)) Add(psName, psValue, true);
}

std::optional<std::u16string_view> privProperties::textOf(std::u16string_view psName, std::u16string& buffer) const {
    const auto text = items_ ? items_->textOf(psName, buffer) : std::nullopt;
    if (listener_ != nullptr) listener_->lookedUp(psName, text.has_value());
    return text;
}

PropertyRef privProperties::itemAt(const Variant& pvIndexKey) const {
    if (const auto* name = pvIndexKey.get<std::u16string>()) return Item(std::u16string_view(*name));
    return Item(automation::toLong(pvIndexKey).value_or(0));
}

PropertyRef privProperties::Item(std::u16string_view psName) const {
    PropertyRef found = items_ ? items_->find(psName) : nullptr;
    if (listener_ != nullptr) listener_->lookedUp(psName, found != nullptr);
    return found;
}

PropertyRef privProperties::Item(std::int32_t plIndex) const {
    return plIndex >= 1 && plIndex <= Count() ? items().at(static_cast<std::size_t>(plIndex) - 1) : nullptr;
}

// 0-based; npos or another number beyond the entries if there is no such entry.
std::size_t privProperties::positionOf(const Variant& pvIndexKey) const {
    if (const auto* name = pvIndexKey.get<std::u16string>()) return items().positionOf(*name);
    return static_cast<std::size_t>(automation::toLong(pvIndexKey).value_or(0)) - 1;
}

std::int32_t privProperties::Count() const noexcept {
    return items_ ? static_cast<std::int32_t>(items_->size()) : 0;
}

void privProperties::Remove(const Variant& pvIndexKey) {
    const std::size_t position = positionOf(pvIndexKey);
    if (position < items().size()) items().remove(position);
}

std::shared_ptr<PropertyEnumerator> privProperties::NewEnum() const {
    items();
    return std::make_shared<PropertyEnumerator>(items_, 0);
}

PropertyRef privProperties::GetProperty(std::u16string_view psName, const Variant& pvDefaultValue) {
    if (PropertyRef found = Item(psName)) return found;
    return Add(psName, pvDefaultValue.isMissing() ? Variant() : pvDefaultValue);
}

std::u16string privProperties::GetValueStrCatDump(std::u16string_view psName, std::u16string_view psDefaultValue) {
    const PropertyRef found = Item(psName);
    if (found == nullptr) return std::u16string(psDefaultValue);
    privStrCat& builder = *found->StrCatValue();
    std::u16string text = builder.DumpVal();
    if (text.empty() && builder.Length() > 0) throw std::bad_alloc();  // the builder itself never raises
    return text;
}

Date privProperties::GetValueDate(std::u16string_view psName, Date pdDefaultValue) const {
    const PropertyRef found = Item(psName);
    return found == nullptr ? pdDefaultValue : found->ValueDate();
}

ObjectRef privProperties::GetValueObject(std::u16string_view psName, ObjectRef poDefault) const {
    const PropertyRef found = Item(psName);
    return found == nullptr ? std::move(poDefault) : found->Value().object();
}

void privProperties::RemoveAll() {
    items_ = std::make_shared<KeyedItems>(services_);
}

// An entry that was not made into a property is unchanged and has no children.
template <class Take>
void privProperties::forEachMade(Take take) const {
    for (std::int32_t i = 0; i < Count(); ++i) {
        if (const PropertyRef property = items().entry(static_cast<std::size_t>(i)).property) take(*property);
    }
}

void privProperties::Dispose() {
    forEachMade([](privProperty& property) { property.Dispose(); });
}

bool privProperties::Changed() const {
    bool changed = false;
    forEachMade([&](const privProperty& property) { changed = changed || property.Changed(); });
    return changed;
}

PropertyRef privProperties::Insert(std::int32_t plIndex, std::u16string_view psName, Variant pvValue,
                                   bool pbReplaceOriginal) {
    const bool replaces = pbReplaceOriginal && items().find(psName) != nullptr;
    if (replaces || plIndex < 1 || plIndex > Count()) {
        PropertyRef added = Add(psName, std::move(pvValue), replaces);
        if (replaces && plIndex >= 1) Move(Variant(psName), plIndex);
        return added;
    }
    return items().insert(static_cast<std::size_t>(plIndex) - 1, psName, std::move(pvValue));
}

void privProperties::Move(const Variant& pvIndexKey, std::int32_t plToIndex) {
    const std::size_t from = positionOf(pvIndexKey);
    if (from >= items().size()) return;
    items().move(from, static_cast<std::size_t>(std::clamp(plToIndex, 1, Count())) - 1);
}

std::int32_t privProperties::GetPropertyIndex(std::u16string_view psName) const {
    for (std::size_t i = 0; i < items().size(); ++i) {
        if (equalIgnoringCase(items().entry(i).name, psName)) return static_cast<std::int32_t>(i) + 1;
    }
    return 0;
}

std::int32_t privProperties::countTotal(int level) const {
    const auto visit = enter(level);
    if (!visit) return 0;
    std::int32_t count = Count();
    forEachMade(
        [&](privProperty& property) { count = property.withChildren(count, level, &privProperties::countTotal); });
    return count;
}

// Each property's size, once for having attributes and once for having child properties.
template <class SizeOf>
std::int32_t privProperties::sumOfSizes(SizeOf sizeOf) const {
    std::int64_t size = 0;
    forEachMade([&](privProperty& property) {
        const int times = property.HasAttributes() + property.HasProperties();
        if (times > 0) size = checkedLong(size + std::int64_t{times} * sizeOf(property));
    });
    return static_cast<std::int32_t>(size);
}

std::int32_t privProperties::Size() const {
    return sumOfSizes([](const privProperty& property) { return property.Size(); });
}

std::int32_t privProperties::sizeStored(int level) const {
    const auto visit = enter(level);
    if (!visit) return 0;
    return sumOfSizes([level](privProperty& property) { return property.sizeStored(level); });
}

// ---- Property files

bool privProperties::save(TextForm form, std::u16string_view psFileName, std::u16string_view psPassword) const try {
    std::u16string content = text(form, 0);
    if (!psPassword.empty()) content = encipheredText(content, psPassword);
    return services_.files.write(psFileName, encodeTextFile(content));
} catch (const std::exception&) {
    return false;
}

bool privProperties::LoadFromFile(std::u16string_view psFileName, std::u16string_view psPassword) try {
    auto text = readTextFile(services_.files, psFileName);
    if (!text) return false;
    if (!psPassword.empty()) text = fromUtf8(deciphered(*text, psPassword).value_or(std::string()));
    Build(*text);
    return true;
} catch (const std::exception&) {
    return false;
}

}  // namespace velmor
