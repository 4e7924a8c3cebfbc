#include "platform/win32/ByReference.h"

#include <cstring>
#include <utility>

#include "automation/Convert.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/VariantData.h"

namespace velmor::platform {

namespace {

constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;

// What an object's default members give in the end.
HRESULT takeDefaultValue(ScopedVariant& value, LCID locale) noexcept {
    for (int level = 0; isInterface(value->vt); ++level) {
        const auto object = ComPtr<IUnknown>(value->punkVal).as<IDispatch>(IID_IDispatch);
        if (!object || level == automation::defaultValueLimit) return DISP_E_TYPEMISMATCH;
        DISPPARAMS none{};
        const HRESULT code =
            object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET, &none, value.put(), nullptr, nullptr);
        if (FAILED(code)) return DISP_E_TYPEMISMATCH;
    }
    return S_OK;
}

// Puts the value, which is of that type, in the place of what is there, and lets go of that.
void replaceData(VARTYPE type, void* data, ScopedVariant& value) noexcept {
    VARIANT former{};
    void* const kept = detail::dataOf(former, type);
    void* const fresh = detail::dataOf(*value, type);
    std::memcpy(kept, data, sizeOfData(type));
    if (type == VT_DECIMAL) V_DECIMAL(value.get()).wReserved = 0;
    std::memcpy(data, fresh, sizeOfData(type));
    V_VT(value.get()) = VT_EMPTY;
    V_VT(&former) = type;
    VariantClear(&former);
}

}  // namespace

VARIANT& variableOf(VARIANT& argument) noexcept {
    return V_VT(&argument) == kVariantReference && V_VARIANTREF(&argument) ? *V_VARIANTREF(&argument) : argument;
}

bool isNullReference(VARIANT& argument) noexcept {
    const VARIANT& variable = variableOf(argument);
    return V_ISBYREF(&variable) && V_BYREF(&variable) == nullptr;
}

HRESULT assignVariable(VARIANT& variable, ScopedVariant value, LCID locale) noexcept {
    if (isNullReference(variable)) return DISP_E_TYPEMISMATCH;
    if (!V_ISBYREF(&variable) || V_VT(&variable) == kVariantReference) {
        const VARIANT moved = value.detach();
        const ScopedVariant former(std::exchange(variable, moved));
        return S_OK;
    }
    const auto type = static_cast<VARTYPE>(V_VT(&variable) & ~VT_BYREF);
    if (sizeOfData(type) == 0) return DISP_E_TYPEMISMATCH;
    if (V_VT(value.get()) != type) {
        ScopedVariant converted;
        if (const HRESULT code = convertVariant(converted, *value, locale, type); FAILED(code)) return code;
        value = std::move(converted);
    }
    replaceData(type, V_BYREF(&variable), value);
    return S_OK;
}

HRESULT convertVariant(ScopedVariant& result, const VARIANT& source, LCID locale, VARTYPE type) noexcept {
    if (sizeOfData(type) == 0 || (type & VT_ARRAY) != 0) return DISP_E_TYPEMISMATCH;
    ScopedVariant value;
    HRESULT code = VariantCopyInd(value.get(), const_cast<VARIANT*>(&source));
    if (SUCCEEDED(code) && !isInterface(type)) code = takeDefaultValue(value, locale);
    if (SUCCEEDED(code) && value->vt == type) {
        result = std::move(value);
        return S_OK;
    }
    return FAILED(code) ? code : VariantChangeTypeEx(result.put(), value.get(), locale, VARIANT_ALPHABOOL, type);
}

bool isInterface(VARTYPE type) noexcept {
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

std::size_t sizeOfData(VARTYPE type) noexcept {
    if ((type & VT_ARRAY) != 0) return sizeof(SAFEARRAY*);
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_INT:
        case VT_UINT:
        case VT_R4:
        case VT_ERROR:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        case VT_BSTR:
        case VT_DISPATCH:
        case VT_UNKNOWN:
            return sizeof(void*);
        case VT_DECIMAL:
            return sizeof(DECIMAL);
        default:
            return 0;
    }
}

}  // namespace velmor::platform
