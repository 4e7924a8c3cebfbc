#pragma once

#include "com/DualObject.h"
#include "kvVelmor3.h"

namespace velmor::com {

// The public class ITag4: publishes the handler interface, and answers it with 0 and empty texts.
// As level 0 it is refused wherever it is registered as a handler.
class EmptyHandler final : public DualObject<_ITag4, IID__ITag4, CLSID_ITag4> {
public:
    HRESULT STDMETHODCALLTYPE get_Interface(long* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE GetTagValue(_kvTag* poTag, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommandList(BSTR psHandler, IDispatch** poDatabase, BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ParameterList(BSTR psCommand, BSTR psHandler, IDispatch** poDatabase,
                                                BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_SyntaxString(BSTR psCommand, BSTR psHandler, IDispatch** poDatabase,
                                               BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_CommandDescription(BSTR psCommand, BSTR psHandler, IDispatch** poDatabase,
                                                     BSTR* pResult) noexcept override;
    HRESULT STDMETHODCALLTYPE get_ParameterValueList(BSTR psCommand, BSTR psParameter, BSTR psHandler,
                                                     IDispatch** poDatabase, BSTR* pResult) noexcept override;

private:
    HRESULT giveNothing(BSTR* pResult) noexcept;
};

}  // namespace velmor::com
