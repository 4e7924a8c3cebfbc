#include "com/Enumerator.h"

#include <algorithm>
#include <utility>

#include "com/Guard.h"
#include "core/kvTag.h"
#include "platform/win32/VariantBridge.h"
#include "properties/PropertyEnumerator.h"

namespace velmor::com {

PropertySequence::PropertySequence(std::shared_ptr<PropertyEnumerator> properties)
    : properties_(std::move(properties)) {}

automation::ObjectRef PropertySequence::next() {
    return properties_->next();
}

bool PropertySequence::skip(std::uint32_t count) {
    return properties_->skip(count);
}

void PropertySequence::reset() {
    properties_->reset();
}

std::unique_ptr<Sequence> PropertySequence::clone() {
    return std::make_unique<PropertySequence>(properties_->clone());
}

TagSequence::TagSequence(std::vector<std::shared_ptr<kvTag>> tags)
    : tags_(std::make_shared<const std::vector<std::shared_ptr<kvTag>>>(std::move(tags))) {}

automation::ObjectRef TagSequence::next() {
    return position_ < tags_->size() ? (*tags_)[position_++] : nullptr;
}

bool TagSequence::skip(std::uint32_t count) {
    const std::size_t left = tags_->size() - position_;
    position_ += std::min<std::size_t>(left, count);
    return count <= left;
}

void TagSequence::reset() {
    position_ = 0;
}

std::unique_ptr<Sequence> TagSequence::clone() {
    return std::make_unique<TagSequence>(*this);
}

IUnknown* Enumerator::make(std::unique_ptr<Sequence> sequence) {
    return new Enumerator(std::move(sequence));
}

HRESULT Enumerator::QueryInterface(REFIID id, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IEnumVARIANT)) return E_NOINTERFACE;
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
}

ULONG Enumerator::AddRef() noexcept {
    return ++references_;
}

ULONG Enumerator::Release() noexcept {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT Enumerator::Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept {
    if (fetched) *fetched = 0;
    if (!values || (!fetched && count != 1)) return E_POINTER;
    ULONG given = 0;
    const HRESULT code = guard([&] {
        while (given < count) {
            const automation::ObjectRef object = sequence_->next();
            if (!object) return;
            platform::toVariant(object, values[given]);
            ++given;
        }
    });
    if (FAILED(code)) {
        while (given > 0) VariantClear(&values[--given]);
        return code;
    }
    if (fetched) *fetched = given;
    return given == count ? S_OK : S_FALSE;
}

HRESULT Enumerator::Skip(ULONG count) noexcept {
    bool all = false;
    const HRESULT code = guard([&] { all = sequence_->skip(count); });
    return FAILED(code) ? code : (all ? S_OK : S_FALSE);
}

HRESULT Enumerator::Reset() noexcept {
    return guard([&] { sequence_->reset(); });
}

HRESULT Enumerator::Clone(IEnumVARIANT** copy) noexcept {
    return guard(copy, [&]() -> IEnumVARIANT* { return new Enumerator(sequence_->clone()); });
}

}  // namespace velmor::com
