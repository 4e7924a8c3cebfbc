#include "com/Argument.h"

#include <cstring>
#include <utility>

#include "platform/win32/ByReference.h"

namespace velmor::com {

namespace {

using platform::convertVariant;
using platform::isInterface;
using platform::ScopedVariant;
using platform::variableOf;

bool isMissing(const VARIANT& value) noexcept {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

bool same(const VARIANT& left, const VARIANT& right) noexcept {
    if (left.vt != VT_BSTR) return std::memcmp(&left.llVal, &right.llVal, platform::sizeOfData(left.vt)) == 0;
    const UINT bytes = SysStringByteLen(left.bstrVal);
    return bytes == SysStringByteLen(right.bstrVal) && std::memcmp(left.bstrVal, right.bstrVal, bytes) == 0;
}

// The interface that a value holds, or refers to; null for Nothing and for Null.
HRESULT queryObject(const Parameter& parameter, const VARIANT& source, ScopedVariant& object) noexcept {
    const auto type = static_cast<VARTYPE>(source.vt & ~VT_BYREF);
    if (!isInterface(type) && type != VT_NULL) return DISP_E_TYPEMISMATCH;
    object->vt = parameter.type;
    object->punkVal = nullptr;
    IUnknown* const held = type == VT_NULL ? nullptr : (source.vt & VT_BYREF) ? *source.ppunkVal : source.punkVal;
    if (!held) return S_OK;
    const IID& id = parameter.type == VT_DISPATCH ? IID_IDispatch : parameter.interfaceId;
    if (FAILED(held->QueryInterface(id, reinterpret_cast<void**>(&object->punkVal)))) {
        object->punkVal = nullptr;
        return DISP_E_TYPEMISMATCH;
    }
    return S_OK;
}

}  // namespace

HRESULT Argument::take(const Parameter& parameter, VARIANTARG* source, LCID locale) noexcept {
    if (!source || isMissing(variableOf(*source))) return takeInitial(parameter);
    if (platform::isNullReference(*source)) return DISP_E_TYPEMISMATCH;
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
    const bool fits = parameter.type == VT_VARIANT || (source.vt == parameter.type && !isInterface(parameter.type));
    if (fits && (source.vt & VT_BYREF) == 0) {
        passed_ = source;  // lent for the length of the call
        return S_OK;
    }
    // A variable of the caller may change while the member runs: what it held is kept here.
    if (const HRESULT code = convert(parameter, variableOf(source), locale); FAILED(code)) return code;
    passOwn(parameter);
    return S_OK;
}

HRESULT Argument::takeReference(const Parameter& parameter, VARIANTARG& source, LCID locale) noexcept {
    VARIANTARG& variable = variableOf(source);
    if (variable.vt == (VT_BYREF | parameter.type)) {
        passed_ = variable;
        return S_OK;
    }
    if (const HRESULT code = convert(parameter, variable, locale); FAILED(code)) return code;
    if (source.vt & VT_BYREF) {
        target_ = &variable;
        if (const HRESULT code = VariantCopy(sent_.put(), own_.get()); FAILED(code)) return code;
    }
    passOwn(parameter);
    return S_OK;
}

HRESULT Argument::convert(const Parameter& parameter, const VARIANT& source, LCID locale) noexcept {
    VARIANT* const read = const_cast<VARIANT*>(&source);  // the call below only reads it
    if (parameter.type == VT_VARIANT) return VariantCopyInd(own_.put(), read);
    if (isInterface(parameter.type)) return queryObject(parameter, source, own_);
    return convertVariant(own_, source, locale, parameter.type);
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
    return platform::assignVariable(*target_, std::move(own_), locale);
}

}  // namespace velmor::com
