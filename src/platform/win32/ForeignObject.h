#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// A foreign automation object, called late-bound.
//
// Arguments are passed by the object's type information: a parameter by reference gets a reference of its own
// type, and its new value is returned. Without type information objects are passed by value and everything else
// as a reference to a variant, as scripts pass their variables. A `missing` argument is passed as the
// platform's "parameter not found".
class ForeignObject : public automation::Object {
public:
    explicit ForeignObject(IDispatch* dispatch) : dispatch_(dispatch) {}

    const ComPtr<IDispatch>& dispatch() const noexcept { return dispatch_; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    // From the type information of class or interface, without the underscore that hides a default interface;
    // "Picture" for the system's pictures; "Object" without type information.
    std::u16string typeName() const override;

private:
    // The variant types of a member's parameters; VT_BYREF marks those by reference.
    using Parameters = std::vector<VARTYPE>;

    DISPID identifierOf(std::u16string_view name);
    const Parameters* parametersOf(DISPID id);

    ComPtr<IDispatch> dispatch_;
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by requested name
    std::unordered_map<DISPID, Parameters> parameters_;
    bool typesRead_ = false;
    ComPtr<ITypeInfo> types_;
};

}  // namespace velmor::platform
