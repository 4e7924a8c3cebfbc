#include "com/PropertyFace.h"

#include "com/Guard.h"
#include "com/Receive.h"
#include "properties/privProperties.h"

namespace velmor::com {

HRESULT PropertyFace::get_Name(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->Name(); });
}

HRESULT PropertyFace::get_Value(VARIANT* pResult) noexcept {
    return guard(pResult, [&] { return core_->Value(); });
}

HRESULT PropertyFace::put_Value(VARIANT pvValue) noexcept {
    return guard([&] { core_->Value(valueOf(pvValue)); });
}

// A reference that is no object is an ordinary value.
HRESULT PropertyFace::putref_Value(VARIANT poValue) noexcept {
    return guard([&] {
        automation::Variant value = valueOf(poValue);
        value.isObject() ? core_->SetValue(value.object()) : core_->Value(std::move(value));
    });
}

HRESULT PropertyFace::get_ValueType(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueType(); });
}

HRESULT PropertyFace::get_ValueTypeName(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueTypeName(); });
}

HRESULT PropertyFace::get_Created(DATE* pResult) noexcept {
    return guard(pResult, [&] { return core_->Created(); });
}

HRESULT PropertyFace::get_Modified(DATE* pResult) noexcept {
    return guard(pResult, [&] { return core_->Modified(); });
}

HRESULT PropertyFace::get_Multiple(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->Multiple(); });
}

HRESULT PropertyFace::get_Changed(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->Changed(); });
}

HRESULT PropertyFace::put_Changed(VARIANT_BOOL pbChanged) noexcept {
    return guard([&] { core_->Changed(isTrue(pbChanged)); });
}

HRESULT PropertyFace::get_Encode(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->Encode(); });
}

HRESULT PropertyFace::put_Encode(VARIANT_BOOL pbEncode) noexcept {
    return guard([&] { core_->Encode(isTrue(pbEncode)); });
}

HRESULT PropertyFace::get_Encoding(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->Encoding(); });
}

HRESULT PropertyFace::put_Encoding(long plEncoding) noexcept {
    return guard([&] { core_->Encoding(plEncoding); });
}

HRESULT PropertyFace::get_Attributes(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->Attributes(); });
}

HRESULT PropertyFace::get_Properties(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->Properties(); });
}

HRESULT PropertyFace::Dispose() noexcept {
    return guard([&] { core_->Dispose(); });
}

HRESULT PropertyFace::get_ValueLng(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueLng(); });
}

HRESULT PropertyFace::put_ValueLng(long plValue) noexcept {
    return guard([&] { core_->ValueLng(plValue); });
}

HRESULT PropertyFace::get_ValueStr(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueStr(); });
}

HRESULT PropertyFace::put_ValueStr(BSTR psValue) noexcept {
    return guard([&] { core_->ValueStr(textOf(psValue)); });
}

HRESULT PropertyFace::SetValueStrRef(BSTR* psValue) noexcept {
    return guard([&] { core_->SetValueStrRef(textOf(given(psValue))); });
}

HRESULT PropertyFace::get_ValueDate(long plLocaleID, long plFlags, DATE* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueDate(plLocaleID, plFlags); });
}

HRESULT PropertyFace::ValueDateSet(DATE pdValue) noexcept {
    return guard([&] { core_->ValueDateSet(automation::Date{pdValue}); });
}

HRESULT PropertyFace::get_ValueTrue(VARIANT pvTrueValue, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueTrue(valueOf(pvTrueValue)); });
}

HRESULT PropertyFace::get_ValueBoolean(VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueBoolean(); });
}

HRESULT PropertyFace::put_ValueBoolean(VARIANT_BOOL pbValue) noexcept {
    return guard([&] { core_->ValueBoolean(isTrue(pbValue)); });
}

HRESULT PropertyFace::get_ValueDbl(double* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueDbl(); });
}

HRESULT PropertyFace::put_ValueDbl(double pdValue) noexcept {
    return guard([&] { core_->ValueDbl(pdValue); });
}

HRESULT PropertyFace::get_ValueSng(float* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueSng(); });
}

HRESULT PropertyFace::put_ValueSng(float pnValue) noexcept {
    return guard([&] { core_->ValueSng(pnValue); });
}

HRESULT PropertyFace::get_ValueInt(short* pResult) noexcept {
    return guard(pResult, [&] { return core_->ValueInt(); });
}

HRESULT PropertyFace::put_ValueInt(short piValue) noexcept {
    return guard([&] { core_->ValueInt(piValue); });
}

HRESULT PropertyFace::get_Size(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->Size(); });
}

HRESULT PropertyFace::get_SizeStored(long* pResult) noexcept {
    return guard(pResult, [&] { return core_->SizeStored(); });
}

}  // namespace velmor::com
