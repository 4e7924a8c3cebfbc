#include "platform/win32/ByReference.h"

#include <cstring>
#include <utility>

#include "automation/Convert.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/VariantData.h"

namespace velmor::platform {

namespace {

constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;

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

HRESULT assignReference(VARIANT& argument, const automation::Variant& value) {
    VARIANT& variable = variableOf(argument);
    if (V_ISBYREF(&variable) && V_BYREF(&variable) == nullptr) return DISP_E_TYPEMISMATCH;
    if (!V_ISBYREF(&argument)) return DISP_E_TYPEMISMATCH;
    if (!V_ISBYREF(&variable) || V_VT(&variable) == kVariantReference) {
        const ScopedVariant former(std::exchange(variable, toVariant(value).detach()));
        return S_OK;
    }
    const auto type = static_cast<VARTYPE>(V_VT(&variable) & ~VT_BYREF);
    ScopedVariant converted;
    if (const HRESULT code = convertVariant(value, type, converted); FAILED(code)) return code;
    replaceData(type, V_BYREF(&variable), converted);
    return S_OK;
}

HRESULT convertVariant(const automation::Variant& value, VARTYPE type, ScopedVariant& result) {
    if (sizeOfData(type) == 0 || (type & VT_ARRAY) != 0) return DISP_E_TYPEMISMATCH;
    automation::Variant kept;
    const automation::Variant* const plain = isInterface(type) ? &value : automation::plainValue(value, kept);
    if (!plain) return DISP_E_TYPEMISMATCH;
    result = toVariant(*plain);
    if (V_VT(result.get()) == type) return S_OK;
    return VariantChangeTypeEx(result.get(), result.get(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, type);
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
