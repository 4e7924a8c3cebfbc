#pragma once

#include "com/InterfaceTable.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// IDispatch::Invoke of a dual interface: brings the arguments to their declared types (by-reference
// Variants of scripts included), calls the vtable member, writes references back.
//
// Like the platform's own, it serves `tag.Tags(1)` by asking the default member of what `Tags`
// gives, and besides `tag.Properties("x") = 1` in the same way. A property that only takes
// references takes objects by a plain let too, because some scripts have no other.
class LateCall {
public:
    // The object is the dual interface itself; everything must outlive the call.
    LateCall(const InterfaceTable& members, IDispatch& object, LCID locale, DISPPARAMS& arguments) noexcept
        : members_(members), object_(object), locale_(locale), arguments_(arguments) {}

    HRESULT invoke(DISPID id, WORD flags, VARIANT* result, EXCEPINFO* exception, UINT* faultyArgument) noexcept;

private:
    HRESULT put(DISPID id, WORD flags) noexcept;
    HRESULT call(const Member& member, VARIANT* result) noexcept;
    HRESULT callThroughDefault(const Member& getter, UINT own, WORD flags, VARIANT* result) noexcept;
    HRESULT fail(HRESULT code) noexcept;
    VARIANTARG* source(const Member& member, UINT index) noexcept;
    UINT positional() const noexcept;
    bool knowsNames(const Member& member) const noexcept;

    const InterfaceTable& members_;
    IDispatch& object_;
    LCID locale_;
    DISPPARAMS& arguments_;
    EXCEPINFO* exception_ = nullptr;
    UINT* faultyArgument_ = nullptr;
};

}  // namespace velmor::com
