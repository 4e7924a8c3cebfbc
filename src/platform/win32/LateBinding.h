#pragma once

#include <string_view>

#include "automation/Object.h"
#include "platform/win32/Windows.h"

// IDispatch for an object of ours, by Object::invoke. Arguments come in any of the platform's forms: by value, by typed
// reference, by reference to a Variant, by name, left out. A reference takes what the member left in it, converted to
// its type, when the member changed it.
namespace velmor::platform {

// What a host calls members and their parameters by.
class MemberNames {
public:
    virtual ~MemberNames() = default;
    // DISPID_UNKNOWN for an unknown name.
    virtual DISPID identifierOf(std::u16string_view name) = 0;
    // The position of a parameter; DISPID_UNKNOWN for an unknown name.
    virtual DISPID parameterOf(DISPID member, std::u16string_view name) const = 0;
    virtual bool hasParameter(DISPID member, DISPID position) const = 0;
    // Raises 438 for an unknown identifier.
    virtual std::u16string_view nameOf(DISPID member) const = 0;
};

HRESULT findNames(MemberNames& members, LPOLESTR* names, UINT count, DISPID* ids) noexcept;

struct LateCall {
    DISPID id;
    WORD flags;
    DISPPARAMS* parameters;
    VARIANT* result;
    EXCEPINFO* exception;
    UINT* faultyArgument;
};
// Both must outlive the call.
HRESULT invokeLate(automation::Object& object, const MemberNames& members, const LateCall& call) noexcept;

}  // namespace velmor::platform
