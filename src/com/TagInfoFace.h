#pragma once

#include "com/Face.h"
#include "handlers/kvTagInfo.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class kvTagInfo.
class TagInfoFace final : public Face<_kvTagInfo, kvTagInfo, IID__kvTagInfo, CLSID_kvTagInfo> {
public:
    using Face::Face;

    HRESULT STDMETHODCALLTYPE TagAvailable(BSTR psHandlerName, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE TagRegistered(BSTR psHandlerName, VARIANT_BOOL* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE CommandList(BSTR psHandlerName, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE ParameterList(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerListString(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerListString2(BSTR psSubHandler, VARIANT_BOOL pbFiltered,
                                                 BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerList(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerList2(BSTR psSubHandler, VARIANT_BOOL pbFiltered,
                                           VARIANT_BOOL pbIncludeSubHandlers,
                                           _privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerListFilteredString(BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE HandlerListFiltered(_privProperties** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE CommandSyntax(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE CommandDescription(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_Database(IDispatch** pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE putref_Database(IDispatch* poDatabase) noexcept override;
    HRESULT STDMETHODCALLTYPE ParameterValueList(BSTR psHandlerName, BSTR psCommand, BSTR psParameter,
                                                 BSTR* pResult) noexcept override;
};

}  // namespace velmor::com
