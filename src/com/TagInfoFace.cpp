#include "com/TagInfoFace.h"

#include "com/Receive.h"
#include "properties/privProperties.h"

namespace velmor::com {

HRESULT TagInfoFace::TagAvailable(BSTR psHandlerName, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->TagAvailable(viewOf(psHandlerName)); });
}

HRESULT TagInfoFace::TagRegistered(BSTR psHandlerName, VARIANT_BOOL* pResult) noexcept {
    return guard(pResult, [&] { return core_->TagRegistered(viewOf(psHandlerName)); });
}

HRESULT TagInfoFace::CommandList(BSTR psHandlerName, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandList(viewOf(psHandlerName)); });
}

HRESULT TagInfoFace::ParameterList(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->ParameterList(viewOf(psHandlerName), viewOf(psCommand)); });
}

HRESULT TagInfoFace::HandlerListString(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerListString(); });
}

HRESULT TagInfoFace::HandlerListString2(BSTR psSubHandler, VARIANT_BOOL pbFiltered, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerListString2(viewOf(psSubHandler), isTrue(pbFiltered)); });
}

HRESULT TagInfoFace::HandlerList(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerList(); });
}

HRESULT TagInfoFace::HandlerList2(BSTR psSubHandler, VARIANT_BOOL pbFiltered, VARIANT_BOOL pbIncludeSubHandlers,
                                  _privProperties** pResult) noexcept {
    return guard(pResult, [&] {
        return core_->HandlerList2(viewOf(psSubHandler), isTrue(pbFiltered), isTrue(pbIncludeSubHandlers));
    });
}

HRESULT TagInfoFace::HandlerListFilteredString(BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerListFilteredString(); });
}

HRESULT TagInfoFace::HandlerListFiltered(_privProperties** pResult) noexcept {
    return guard(pResult, [&] { return core_->HandlerListFiltered(); });
}

HRESULT TagInfoFace::CommandSyntax(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandSyntax(viewOf(psHandlerName), viewOf(psCommand)); });
}

HRESULT TagInfoFace::CommandDescription(BSTR psHandlerName, BSTR psCommand, BSTR* pResult) noexcept {
    return guard(pResult, [&] { return core_->CommandDescription(viewOf(psHandlerName), viewOf(psCommand)); });
}

HRESULT TagInfoFace::get_Database(IDispatch** pResult) noexcept {
    return guard(pResult, [&] { return core_->Database(); });
}

HRESULT TagInfoFace::putref_Database(IDispatch* poDatabase) noexcept {
    return guard([&] { core_->Database(objectOf(poDatabase)); });
}

HRESULT TagInfoFace::ParameterValueList(BSTR psHandlerName, BSTR psCommand, BSTR psParameter, BSTR* pResult) noexcept {
    return guard(pResult, [&] {
        return core_->ParameterValueList(viewOf(psHandlerName), viewOf(psCommand), viewOf(psParameter));
    });
}

}  // namespace velmor::com
