#pragma once

#include "com/Face.h"
#include "kvVelmor3.h"
#include "properties/privProperties.h"

namespace velmor::com {

// The public class privProperties.
class PropertiesFace final : public Face<_privProperties, privProperties, IID__privProperties, CLSID_privProperties> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE Add(BSTR psName, VARIANT pvValue, VARIANT_BOOL pbReplaceOriginal,
                                  _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddStr(BSTR psName, BSTR psValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddLng(BSTR psName, long plValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddDbl(BSTR psName, double pdValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddSng(BSTR psName, float pnValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddDate(BSTR psName, DATE pdValue, VARIANT_BOOL pbReplaceOriginal,
                                      _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddBoolean(BSTR psName, VARIANT_BOOL pbValue, VARIANT_BOOL pbReplaceOriginal,
                                         _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddInt(BSTR psName, short piValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddObject(BSTR psName, IDispatch* poValue, VARIANT_BOOL pbReplaceOriginal,
                                        _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Item(VARIANT pvIndexKey, _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Count(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Remove(VARIANT pvIndexKey) noexcept override;
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetProperty(BSTR psName, VARIANT pvDefaultValue,
                                          _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValue(BSTR psName, VARIANT pvDefaultValue, VARIANT* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueStr(BSTR psName, BSTR psDefaultValue, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueStrCatDump(BSTR psName, BSTR psDefaultValue, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueLng(BSTR psName, long plDefaultValue, long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueInt(BSTR psName, short piDefaultValue, short* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueDbl(BSTR psName, double pnDefaultValue, double* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueSng(BSTR psName, float pnDefaultValue, float* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueDate(BSTR psName, DATE pdDefaultValue, DATE* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueObject(BSTR psName, IDispatch* poDefaultValue,
                                             IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetValueBoolean(BSTR psName, VARIANT_BOOL pbDefaultValue,
                                              VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Delimited(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Stored(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Command(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_TagCommand(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Build(BSTR* psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                    BSTR psDelimiter) noexcept override;
    HRESULT STDMETHODCALLTYPE BuildByVal(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                         BSTR psDelimiter) noexcept override;
    HRESULT STDMETHODCALLTYPE BuildByDelimited(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                               BSTR psDelimiter) noexcept override;
    HRESULT STDMETHODCALLTYPE BuildInternal(BSTR psString, VARIANT_BOOL pbAppendValues, VARIANT_BOOL pbTagString,
                                            BSTR psDelimiter) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE SaveToFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE LoadFromFile(BSTR psFileName, BSTR psPassword, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE BuildByContainsQuery(BSTR psSearchString) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ContainsQuery(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveAll() noexcept override;
    HRESULT STDMETHODCALLTYPE Dispose() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Changed(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Sort() noexcept override;
    HRESULT STDMETHODCALLTYPE Insert(long plIndex, BSTR psName, VARIANT pvValue, VARIANT_BOOL pbReplaceOriginal,
                                     _privProperty** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE Move(VARIANT pvIndexKey, long plToIndex) noexcept override;
    HRESULT STDMETHODCALLTYPE GetPropertyIndex(BSTR psName, long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CountTotal(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Size(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SizeStored(long* pResult) noexcept override;
};

}  // namespace velmor::com
