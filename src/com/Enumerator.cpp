#include "com/Enumerator.h"

#include "com/Guard.h"
#include "platform/win32/VariantBridge.h"

namespace velmor::com {

HRESULT Enumerator::QueryInterface(REFIID id, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IEnumVARIANT)) return E_NOINTERFACE;
    *object = static_cast<IEnumVARIANT*>(this);
    AddRef();
    return S_OK;
}

ULONG Enumerator::AddRef() noexcept {
    return references_.add();
}

ULONG Enumerator::Release() noexcept {
    const ULONG left = references_.release();
    if (left == 0) delete this;
    return left;
}

HRESULT Enumerator::Next(ULONG count, VARIANT* values, ULONG* fetched) noexcept {
    if (fetched) *fetched = 0;
    if (!values || (!fetched && count != 1)) return E_POINTER;
    ULONG given = 0;
    const HRESULT code = guard(IID_IEnumVARIANT, [&] {
        while (given < count) {
            const automation::ObjectRef object = items_->nextObject();
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
    const HRESULT code = guard(IID_IEnumVARIANT, [&] { all = items_->skip(count); });
    return FAILED(code) ? code : (all ? S_OK : S_FALSE);
}

HRESULT Enumerator::Reset() noexcept {
    return guard(IID_IEnumVARIANT, [&] { items_->reset(); });
}

HRESULT Enumerator::Clone(IEnumVARIANT** copy) noexcept {
    return guard(IID_IEnumVARIANT, copy, [&]() -> IEnumVARIANT* { return new Enumerator(items_->clone()); });
}

}  // namespace velmor::com
