#include "platform/win32/VariantBridge.h"

#include <cstring>

#include "automation/Errors.h"
#include "platform/win32/VariantData.h"

namespace velmor::platform {

using automation::Variant;

namespace {

// Lets go of what stands there and moves `fresh`, which is of that type, in its place.
void replaceData(VARTYPE type, void* data, VARIANT& fresh) noexcept {
    VARIANT old;
    VariantInit(&old);
    if (type == VT_DECIMAL) {
        DECIMAL decimal = V_DECIMAL(&fresh);
        decimal.wReserved = 0;
        std::memcpy(data, &decimal, sizeof decimal);
        return;
    }
    std::size_t size = sizeof(V_I8(&fresh));
    switch (type) {
        case VT_I1:
        case VT_UI1:
            size = 1;
            break;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            size = 2;
            break;
        case VT_R8:
        case VT_CY:
        case VT_DATE:
        case VT_I8:
        case VT_UI8:
            break;
        default:
            size = 4;  // numbers of 32 bits
    }
    const bool owns = type == VT_BSTR || type == VT_DISPATCH || type == VT_UNKNOWN || (type & VT_ARRAY) != 0;
    if (owns) size = sizeof(void*);
    std::memcpy(&V_I8(&old), data, size);
    std::memcpy(data, &V_I8(&fresh), size);
    V_VT(&old) = owns ? type : static_cast<VARTYPE>(VT_EMPTY);
    V_VT(&fresh) = VT_EMPTY;
    VariantClear(&old);
}

}  // namespace

BSTR makeBstr(std::u16string_view text) {
    const auto* const units = reinterpret_cast<const OLECHAR*>(text.data());
    const BSTR copy = SysAllocStringLen(units, static_cast<UINT>(text.size()));
    if (copy == nullptr) throw Error(7, u"kvVelmor3", u"Out of memory");
    return copy;
}

std::u16string_view viewOf(BSTR text) noexcept {
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

void toVariant(const Variant& value, VARIANT& result) {
    detail::fillVariant(value, result, 0);
}

ScopedVariant toVariant(const Variant& value) {
    ScopedVariant result;
    toVariant(value, *result);
    return result;
}

Variant fromVariant(const VARIANT& value) {
    return detail::copyVariant(value, 0);
}

bool assignReference(VARIANT& target, const Variant& value) {
    if ((V_VT(&target) & VT_BYREF) == 0 || V_BYREF(&target) == nullptr) return false;
    const auto type = static_cast<VARTYPE>(V_VT(&target) & ~VT_BYREF);
    ScopedVariant fresh = toVariant(value);
    if (type == VT_VARIANT) {
        VARIANT* const inner = V_VARIANTREF(&target);
        // A variable of the caller that is a reference itself stands for what it refers to.
        if ((V_VT(inner) & VT_BYREF) != 0 && V_VT(inner) != (VT_BYREF | VT_VARIANT))
            return assignReference(*inner, value);
        VariantClear(inner);
        *inner = fresh.detach();
        return true;
    }
    if (V_VT(fresh.get()) != type) {
        if ((type & VT_ARRAY) != 0) return false;
        if (FAILED(VariantChangeTypeEx(fresh.get(), fresh.get(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type))) {
            return false;
        }
    }
    replaceData(type, V_BYREF(&target), *fresh);
    return true;
}

}  // namespace velmor::platform
