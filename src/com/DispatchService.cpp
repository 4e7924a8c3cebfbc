#include "com/DispatchService.h"

#include "com/Guard.h"
#include "com/LateCall.h"
#include "com/TypeLibrary.h"

namespace velmor::com {

HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept {
    return guard(IID_IDispatch, info, [&] { return TypeLibrary::instance().typeInfo(id).detach(); });
}

HRESULT findNames(REFIID interfaceId, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    if (!names || !ids) return E_POINTER;
    HRESULT found = S_OK;
    const HRESULT code = guard(IID_IDispatch, [&] {
        found = TypeLibrary::instance().typeInfo(interfaceId)->GetIDsOfNames(names, count, ids);
    });
    return FAILED(code) ? code : found;
}

HRESULT invokeLate(REFIID interfaceId, IDispatch& object, const LateRequest& request) noexcept {
    if (!request.arguments) return E_POINTER;
    if (request.result) VariantInit(request.result);
    const InterfaceTable* table = nullptr;
    const HRESULT code = guard(IID_IDispatch, [&] { table = &TypeLibrary::instance().table(interfaceId); });
    if (FAILED(code)) return code;
    LateCall call(*table, object, request.locale, *request.arguments);
    return call.invoke(request.id, request.flags, request.result, request.exception, request.faultyArgument);
}

}  // namespace velmor::com
