#pragma once

#include "com/Face.h"
#include "kvVelmor3.h"
#include "properties/privProperty.h"

namespace velmor::com {

// The public class privProperty.
class PropertyFace final : public Face<_privProperty, privProperty, IID__privProperty, CLSID_privProperty> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Value(VARIANT* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(VARIANT pvValue) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Value(VARIANT poValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueType(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueTypeName(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Created(DATE* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Modified(DATE* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Multiple(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Changed(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Changed(VARIANT_BOOL pbChanged) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Encode(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Encode(VARIANT_BOOL pbEncode) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Encoding(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Encoding(long plEncoding) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Attributes(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Properties(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Dispose() noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueLng(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueLng(long plValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueStr(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueStr(BSTR psValue) noexcept override;
    HRESULT STDMETHODCALLTYPE SetValueStrRef(BSTR* psValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueDate(long plLocaleID, long plFlags, DATE* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ValueDateSet(DATE pdValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueTrue(VARIANT pvTrueValue, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueBoolean(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueBoolean(VARIANT_BOOL pbValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueDbl(double* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueDbl(double pdValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueSng(float* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueSng(float pnValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ValueInt(short* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ValueInt(short piValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Size(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SizeStored(long* pResult) noexcept override;
};

}  // namespace velmor::com
