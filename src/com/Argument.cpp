#include "com/Argument.h"

#include <cstring>

#include "platform/win32/ComPtr.h"

namespace velmor::com {

namespace {

using platform::ComPtr;
using platform::ScopedVariant;

// A Variant that refers to another Variant stands for that one.
VARIANTARG& variableOf(VARIANTARG& source) noexcept {
    return source.vt == (VT_BYREF | VT_VARIANT) && source.pvarVal ? *source.pvarVal : source;
}

bool isMissing(const VARIANT& value) noexcept {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

bool holdsObject(VARTYPE type) noexcept {
    return type == VT_DISPATCH || type == VT_UNKNOWN;
}

// The value in its own words: texts and objects are compared and moved by their pointer's width.
std::size_t widthOf(VARTYPE type) noexcept {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
        case VT_CY:
        case VT_DATE:
            return 8;
        default:
            return 4;
    }
}

bool same(const VARIANT& left, const VARIANT& right) noexcept {
    if (left.vt != VT_BSTR) return std::memcmp(&left.llVal, &right.llVal, widthOf(left.vt)) == 0;
    const UINT bytes = SysStringByteLen(left.bstrVal);
    return bytes == SysStringByteLen(right.bstrVal) && std::memcmp(left.bstrVal, right.bstrVal, bytes) == 0;
}

HRESULT queryObject(const Parameter& parameter, const VARIANT& source, ScopedVariant& object) noexcept {
    if (source.vt == VT_NULL || (holdsObject(source.vt) && !source.punkVal)) {
        object->vt = parameter.type;
        object->punkVal = nullptr;
        return S_OK;
    }
    if (!holdsObject(source.vt)) return DISP_E_TYPEMISMATCH;
    const IID& id = parameter.type == VT_DISPATCH ? IID_IDispatch : parameter.interfaceId;
    void* queried = nullptr;
    if (FAILED(source.punkVal->QueryInterface(id, &queried))) return DISP_E_TYPEMISMATCH;
    object->vt = parameter.type;
    object->punkVal = static_cast<IUnknown*>(queried);
    return S_OK;
}

// Stores a converted value in a caller's typed variable.
void store(VARIANTARG& target, ScopedVariant& value) noexcept {
    const VARTYPE type = target.vt & ~VT_BYREF;
    if (type == VT_BSTR) SysFreeString(*target.pbstrVal);
    if (holdsObject(type) && *target.ppunkVal) (*target.ppunkVal)->Release();
    const VARIANT moved = value.detach();
    std::memcpy(target.byref, &moved.llVal, widthOf(type));
}

}  // namespace

HRESULT Argument::take(const Parameter& parameter, VARIANTARG* source, LCID locale) noexcept {
    if (!source || isMissing(variableOf(*source))) return takeInitial(parameter);
    return parameter.byReference ? takeReference(parameter, *source, locale) : takeValue(parameter, *source, locale);
}

HRESULT Argument::takeInitial(const Parameter& parameter) noexcept {
    if (!parameter.optional) return DISP_E_PARAMNOTOPTIONAL;
    if (parameter.initial->vt != VT_EMPTY) {
        if (const HRESULT code = convert(parameter, *parameter.initial, LOCALE_INVARIANT); FAILED(code)) return code;
    } else if (parameter.type == VT_VARIANT) {
        own_->vt = VT_ERROR;
        own_->scode = DISP_E_PARAMNOTFOUND;
    } else {
        own_->vt = parameter.type;
        own_->llVal = 0;
    }
    passOwn(parameter);
    return S_OK;
}

HRESULT Argument::takeValue(const Parameter& parameter, VARIANTARG& source, LCID locale) noexcept {
    VARIANTARG& variable = variableOf(source);
    const bool refers = (variable.vt & VT_BYREF) != 0;
    if (!refers && (parameter.type == VT_VARIANT || (variable.vt == parameter.type && !holdsObject(parameter.type)))) {
        passed_ = variable;  // lent for the length of the call
        return S_OK;
    }
    ScopedVariant plain;
    if (const HRESULT code = VariantCopyInd(plain.get(), &variable); FAILED(code)) return code;
    if (parameter.type == VT_VARIANT) {
        own_ = std::move(plain);
    } else if (const HRESULT code = convert(parameter, *plain, locale); FAILED(code)) {
        return code;
    }
    passOwn(parameter);
    return S_OK;
}

HRESULT Argument::takeReference(const Parameter& parameter, VARIANTARG& source, LCID locale) noexcept {
    VARIANTARG& variable = variableOf(source);
    if (variable.vt == (VT_BYREF | parameter.type)) {
        passed_ = variable;
        return S_OK;
    }
    const bool isVariable = &variable != &source;
    if (isVariable && variable.vt == parameter.type) {  // a Variant that holds the declared type
        passed_.vt = VT_BYREF | parameter.type;
        passed_.byref = &variable.llVal;
        return S_OK;
    }
    ScopedVariant plain;
    if (const HRESULT code = VariantCopyInd(plain.get(), &variable); FAILED(code)) return code;
    if (const HRESULT code = convert(parameter, *plain, locale); FAILED(code)) return code;
    if (isVariable || (variable.vt & VT_BYREF)) {
        target_ = &variable;
        if (const HRESULT code = VariantCopy(sent_.put(), own_.get()); FAILED(code)) return code;
    }
    passOwn(parameter);
    return S_OK;
}

HRESULT Argument::convert(const Parameter& parameter, const VARIANT& source, LCID locale) noexcept {
    VARIANT* const read = const_cast<VARIANT*>(&source);  // the calls below only read it
    if (parameter.type == VT_VARIANT) return VariantCopy(own_.put(), read);
    if (holdsObject(parameter.type)) return queryObject(parameter, source, own_);
    return VariantChangeTypeEx(own_.put(), read, locale, VARIANT_ALPHABOOL, parameter.type);
}

void Argument::passOwn(const Parameter& parameter) noexcept {
    if (!parameter.byReference) {
        passed_ = *own_;
        return;
    }
    passed_.vt = VT_BYREF | parameter.type;
    passed_.byref = &own_->llVal;
}

HRESULT Argument::writeBack(LCID locale) noexcept {
    if (!target_ || same(*own_, *sent_)) return S_OK;
    if (!(target_->vt & VT_BYREF)) {
        VariantClear(target_);
        *target_ = own_.detach();
        return S_OK;
    }
    ScopedVariant value;
    const VARTYPE type = target_->vt & ~VT_BYREF;
    const HRESULT code = VariantChangeTypeEx(value.get(), own_.get(), locale, VARIANT_ALPHABOOL, type);
    if (SUCCEEDED(code)) store(*target_, value);
    return code;
}

}  // namespace velmor::com
