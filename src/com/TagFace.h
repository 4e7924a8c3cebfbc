#pragma once

#include "com/Face.h"
#include "core/kvTag.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class kvTag. What the members do stands at the core class.
class TagFace final : public Face<_kvTag, kvTag, IID__kvTag, CLSID_kvTag> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE get_Name(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Name(BSTR psValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Value(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_Value(BSTR psValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Result(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Properties(IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Properties(IDispatch* poProperties) noexcept override;
    HRESULT STDMETHODCALLTYPE GetProcessedPropertiesValue(BSTR psName, BSTR psDefault, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Variables(IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Variables(IDispatch* poVariables) noexcept override;
    HRESULT STDMETHODCALLTYPE GetProcessedVariablesValue(BSTR psName, BSTR psDefault, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE BuildTagCollection() noexcept override;
    HRESULT STDMETHODCALLTYPE get_Elements(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetProcessedElementsValue(BSTR psName, VARIANT pvDefault,
                                                        BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_HandlerName(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommandName(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommandValue(VARIANT* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommandValueProcessed(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Database(IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Database(IDispatch* poDatabase) noexcept override;
    HRESULT STDMETHODCALLTYPE ProtectRTFCode(BSTR* psValue) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ProtectRTF(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_ProtectRTF(VARIANT_BOOL pbProtectRTF) noexcept override;
    HRESULT STDMETHODCALLTYPE CleanRTFFile(BSTR psFileName, BSTR psSaveFileName,
                                           VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CleanRTFMergeMode(VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE put_CleanRTFMergeMode(VARIANT_BOOL pbMergeMode) noexcept override;
    HRESULT STDMETHODCALLTYPE CleanRTF(BSTR* psRTF) noexcept override;
    HRESULT STDMETHODCALLTYPE CleanRTFByVal(BSTR psRTF, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE NewTag(_kvTag** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ProcessValue(BSTR psValue, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ProcessName(BSTR psName, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Tags(_kvTags** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Direct(_kvDirectTag** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE LogError(BSTR psTagHandler, BSTR psError, long* plErrorNumber, BSTR psTagData,
                                       BSTR psErrorData) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ErrorLog(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Library(IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE AddTableStartEndControlWords() noexcept override;
    HRESULT STDMETHODCALLTYPE RemoveExtraTrowd(long* plTableStart, long* plTableEnd) noexcept override;
    HRESULT STDMETHODCALLTYPE Dispose(VARIANT_BOOL pbDisposeProperties) noexcept override;
};

}  // namespace velmor::com
