#pragma once

#include "platform/win32/Windows.h"

namespace velmor::com {

// IDispatch out of the type library, for DualObject.

HRESULT giveTypeInfo(REFGUID id, ITypeInfo** info) noexcept;
HRESULT findNames(REFIID interfaceId, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

struct LateRequest {
    DISPID id;
    LCID locale;
    WORD flags;
    DISPPARAMS* arguments;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* faultyArgument;
};
HRESULT invokeLate(REFIID interfaceId, IDispatch& object, const LateRequest& request) noexcept;

}  // namespace velmor::com
