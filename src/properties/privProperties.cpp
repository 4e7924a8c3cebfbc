#include "properties/privProperties.h"

#include <algorithm>
#include <utility>

#include "automation/Convert.h"
#include "common/Limits.h"
#include "platform/Services.h"
#include "properties/KeyedItems.h"
#include "properties/Overflow.h"
#include "properties/PropertyEnumerator.h"
#include "properties/PropertyReader.h"
#include "properties/PropertySort.h"
#include "properties/PropertyWriter.h"
#include "text/Compare.h"
#include "text/privStrCat.h"

namespace velmor {

using automation::Date;
using automation::ObjectRef;
using automation::Variant;

namespace {

PropertyRef refer(privProperty* property) {
    return property == nullptr ? nullptr : std::static_pointer_cast<privProperty>(property->shared_from_this());
}

}  // namespace

privProperties::privProperties(platform::Services& services)
    : services_(services), items_(std::make_shared<KeyedItems>()) {}

privProperties::~privProperties() = default;

PropertyRef privProperties::newProperty(Date now) const {
    return std::make_shared<privProperty>(propertyKey(), services_, now);
}

void privProperties::append(const PropertyRef& property) {
    if (privProperty* const first = items_->append(property)) first->SetMultiple(true);
}

PropertyRef privProperties::add(std::u16string_view psName, Variant value, bool pbReplaceOriginal) {
    if (privProperty* const found = pbReplaceOriginal ? items_->find(psName) : nullptr) {
        found->Value(std::move(value));
        found->Changed(false);
        return refer(found);
    }
    PropertyRef property = newProperty(services_.clock.now());
    property->SetName(std::u16string(psName));
    property->SetValueQuiet(std::move(value));
    append(property);
    return property;
}

PropertyRef privProperties::Add(std::u16string_view psName, Variant pvValue, bool pbReplaceOriginal) {
    return add(psName, std::move(pvValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddStr(std::u16string_view psName, std::u16string psValue, bool pbReplaceOriginal) {
    return add(psName, Variant(std::move(psValue)), pbReplaceOriginal);
}

PropertyRef privProperties::AddLng(std::u16string_view psName, std::int32_t plValue, bool pbReplaceOriginal) {
    return add(psName, Variant(plValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddDbl(std::u16string_view psName, double pdValue, bool pbReplaceOriginal) {
    return add(psName, Variant(pdValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddSng(std::u16string_view psName, float pnValue, bool pbReplaceOriginal) {
    return add(psName, Variant(pnValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddDate(std::u16string_view psName, Date pdValue, bool pbReplaceOriginal) {
    return add(psName, Variant(pdValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddBoolean(std::u16string_view psName, bool pbValue, bool pbReplaceOriginal) {
    return add(psName, Variant(pbValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddInt(std::u16string_view psName, std::int16_t piValue, bool pbReplaceOriginal) {
    return add(psName, Variant(piValue), pbReplaceOriginal);
}

PropertyRef privProperties::AddObject(std::u16string_view psName, ObjectRef poValue, bool pbReplaceOriginal) {
    return add(psName, Variant(std::move(poValue)), pbReplaceOriginal);
}

PropertyRef privProperties::itemAt(const Variant& pvIndexKey) const {
    if (const auto* name = pvIndexKey.get<std::u16string>()) return Item(std::u16string_view(*name));
    return Item(automation::toLong(pvIndexKey).value_or(0));
}

PropertyRef privProperties::Item(std::u16string_view psName) const {
    return refer(items_->find(psName));
}

PropertyRef privProperties::Item(std::int32_t plIndex) const {
    return plIndex >= 1 && plIndex <= Count() ? items_->at(static_cast<std::size_t>(plIndex) - 1) : nullptr;
}

// 0-based; npos when there is no such entry.
std::size_t privProperties::positionOf(const Variant& pvIndexKey) const {
    if (const auto* name = pvIndexKey.get<std::u16string>()) {
        const privProperty* const found = items_->find(*name);
        return found == nullptr ? KeyedItems::npos : items_->positionOf(found);
    }
    const std::int32_t index = automation::toLong(pvIndexKey).value_or(0);
    return index >= 1 && index <= Count() ? static_cast<std::size_t>(index) - 1 : KeyedItems::npos;
}

std::int32_t privProperties::Count() const noexcept {
    return static_cast<std::int32_t>(items_->size());
}

void privProperties::Remove(const Variant& pvIndexKey) {
    const std::size_t position = positionOf(pvIndexKey);
    if (position != KeyedItems::npos) items_->remove(position);
}

std::shared_ptr<PropertyEnumerator> privProperties::NewEnum() const {
    return std::make_shared<PropertyEnumerator>(items_, 0);
}

PropertyRef privProperties::GetProperty(std::u16string_view psName, const Variant& pvDefaultValue) {
    if (PropertyRef found = Item(psName)) return found;
    return add(psName, pvDefaultValue.isMissing() ? Variant() : pvDefaultValue, false);
}

Variant privProperties::GetValue(std::u16string_view psName, const Variant& pvDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    if (found != nullptr) return found->Value();
    return pvDefaultValue.isMissing() ? Variant() : pvDefaultValue;
}

std::u16string privProperties::GetValueStr(std::u16string_view psName, std::u16string_view psDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? std::u16string(psDefaultValue) : found->ValueStr();
}

std::u16string privProperties::GetValueStrCatDump(std::u16string_view psName, std::u16string_view psDefaultValue) {
    privProperty* const found = items_->find(psName);
    return found == nullptr ? std::u16string(psDefaultValue) : found->StrCatValue()->DumpVal();
}

std::int32_t privProperties::GetValueLng(std::u16string_view psName, std::int32_t plDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? plDefaultValue : found->ValueLng();
}

std::int16_t privProperties::GetValueInt(std::u16string_view psName, std::int16_t piDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? piDefaultValue : found->ValueInt();
}

double privProperties::GetValueDbl(std::u16string_view psName, double pnDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? pnDefaultValue : found->ValueDbl();
}

float privProperties::GetValueSng(std::u16string_view psName, float pnDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? pnDefaultValue : found->ValueSng();
}

Date privProperties::GetValueDate(std::u16string_view psName, Date pdDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? pdDefaultValue : found->ValueDate();
}

ObjectRef privProperties::GetValueObject(std::u16string_view psName, ObjectRef poDefault) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? poDefault : found->Value().object();
}

bool privProperties::GetValueBoolean(std::u16string_view psName, bool pbDefaultValue) const {
    const privProperty* const found = items_->find(psName);
    return found == nullptr ? pbDefaultValue : found->ValueBoolean();
}

std::u16string privProperties::text(TextForm form, int level) const {
    const Visit visit(*this, level);
    return visit ? PropertyWriter(services_, form, level).write(*items_) : std::u16string();
}

std::u16string privProperties::Stored() const {
    return text(TextForm::stored, 0);
}

std::u16string privProperties::Delimited() const {
    return text(TextForm::delimited, 0);
}

std::u16string privProperties::TagCommand() const {
    return text(TextForm::tagCommand, 0);
}

std::u16string privProperties::Command() const {
    return text(TextForm::command, 0);
}

void privProperties::Build(std::u16string_view psString, bool pbAppendValues, bool pbTagString,
                           std::u16string_view psDelimiter) {
    BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
}

void privProperties::BuildByVal(std::u16string_view psString, bool pbAppendValues, bool pbTagString,
                                std::u16string_view psDelimiter) {
    BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
}

void privProperties::BuildByDelimited(std::u16string_view psString, bool pbAppendValues, bool pbTagString,
                                      std::u16string_view psDelimiter) {
    BuildInternal(psString, pbAppendValues, pbTagString, psDelimiter);
}

void privProperties::BuildInternal(std::u16string_view psString, bool pbAppendValues, bool pbTagString,
                                   std::u16string_view psDelimiter) {
    read(psString, pbTagString ? ReadForm::tag : ReadForm::stored, pbAppendValues, psDelimiter);
}

void privProperties::BuildList(std::u16string_view psString) {
    read(psString, ReadForm::list, false, u":");
}

void privProperties::read(std::u16string_view text, ReadForm form, bool append, std::u16string_view delimiter) {
    const auto old = items_;  // the text may be a value of its own
    if (!append) RemoveAll();
    try {
        std::size_t ownAllowance = decodingLimit;
        std::size_t& decompressed = decodingAllowance != nullptr ? *decodingAllowance : ownAllowance;
        PropertyReader(*this, {0, decompressed}).read(text, form, delimiter.empty() ? u":" : delimiter);
    } catch (...) {
        items_ = old;
        throw;
    }
}

void privProperties::RemoveAll() {
    items_ = std::make_shared<KeyedItems>();
}

void privProperties::Dispose() {
    for (const PropertyRef& property : *items_) property->Dispose();
}

bool privProperties::Changed() const {
    return std::any_of(items_->begin(), items_->end(), [](const PropertyRef& each) { return each->Changed(); });
}

void privProperties::Sort() {
    if (items_->size() < 2) return;
    std::vector<PropertyRef> sorted = sortedProperties({items_->begin(), items_->end()});
    const auto items = std::make_shared<KeyedItems>();
    items->reserve(sorted.size());
    // Nothing fails from here on. Keys are claimed in the present order, not in the sorted one.
    items_->releaseKeys();
    for (const PropertyRef& property : *items_) items->append(property);
    items->arrange(std::move(sorted));
    items_ = items;
}

PropertyRef privProperties::Insert(std::int32_t plIndex, std::u16string_view psName, Variant pvValue,
                                   bool pbReplaceOriginal) {
    if (plIndex < 1) return add(psName, std::move(pvValue), pbReplaceOriginal);
    if (pbReplaceOriginal && items_->find(psName) != nullptr) {
        PropertyRef found = add(psName, std::move(pvValue), true);
        Move(Variant(psName), plIndex);
        return found;
    }
    const auto position = static_cast<std::size_t>(plIndex) - 1;
    if (position >= items_->size()) return add(psName, std::move(pvValue), false);
    PropertyRef property = newProperty(services_.clock.now());
    property->SetName(std::u16string(psName));
    property->SetValueQuiet(std::move(pvValue));
    if (privProperty* const first = items_->insert(position, property)) first->SetMultiple(true);
    return property;
}

void privProperties::Move(const Variant& pvIndexKey, std::int32_t plToIndex) {
    const std::size_t from = positionOf(pvIndexKey);
    if (from == KeyedItems::npos) return;
    items_->move(from, static_cast<std::size_t>(std::clamp(plToIndex, 1, Count())) - 1);
}

std::int32_t privProperties::GetPropertyIndex(std::u16string_view psName) const {
    const auto found = std::find_if(items_->begin(), items_->end(), [psName](const PropertyRef& each) {
        return equalIgnoringCase(each->nameView(), psName);
    });
    return found == items_->end() ? 0 : static_cast<std::int32_t>(found - items_->begin()) + 1;
}

std::int32_t privProperties::CountTotal() const {
    return countTotal(0);
}

std::int32_t privProperties::countTotal(int level) const {
    const Visit visit(*this, level);
    if (!visit) return 0;
    std::int64_t count = Count();
    for (const PropertyRef& property : *items_) count = checkedLong(count + property->countChildren(level));
    return static_cast<std::int32_t>(count);
}

std::int32_t privProperties::Size() const {
    std::int64_t size = 0;
    for (const PropertyRef& property : *items_) {
        const int times = property->HasAttributes() + property->HasProperties();
        if (times > 0) size = checkedLong(size + std::int64_t{times} * property->Size());
    }
    return static_cast<std::int32_t>(size);
}

std::int32_t privProperties::SizeStored() const {
    return sizeStored(0);
}

std::int32_t privProperties::sizeStored(int level) const {
    const Visit visit(*this, level);
    if (!visit) return 0;
    std::int64_t size = 0;
    for (const PropertyRef& property : *items_) {
        const int times = property->HasAttributes() + property->HasProperties();
        if (times > 0) size = checkedLong(size + std::int64_t{times} * property->sizeStored(level));
    }
    return static_cast<std::int32_t>(size);
}

PropertyRef privProperties::AddStrRefInternal(std::u16string_view psName, const std::u16string& psValue) {
    PropertyRef property = GetProperty(psName);
    property->SetValueStrRef(psValue);
    return property;
}

PropertyRef privProperties::AddStrCatInternal(std::u16string_view psName, std::shared_ptr<privStrCat> poBuilder) {
    PropertyRef property = GetProperty(psName);
    property->SetStrCatValue(std::move(poBuilder));
    return property;
}

}  // namespace velmor
