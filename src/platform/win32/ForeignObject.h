#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "automation/Object.h"
#include "automation/Variant.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// Somebody else's automation object, called late-bound.
//
// How arguments go: as the object's type information says, so that a parameter by reference gets a
// reference of its own type, and the value it leaves comes back. Without type information objects
// go by value and everything else as a reference to a variant, as scripts pass their variables. An
// argument that is `missing` goes as the platform's "parameter not found".
class ForeignObject : public automation::Object {
public:
    explicit ForeignObject(IDispatch* dispatch) : dispatch_(dispatch) {}

    const ComPtr<IDispatch>& dispatch() const noexcept { return dispatch_; }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    // From the type information of class or interface, without the underscore that hides a default
    // interface; "Picture" for the system's pictures; "Object" when there is none.
    std::u16string typeName() const override;

private:
    // The variant types of a member's parameters; VT_BYREF tells those by reference.
    using Parameters = std::vector<VARTYPE>;

    DISPID identifierOf(std::u16string_view name);
    const Parameters* parametersOf(DISPID id);

    ComPtr<IDispatch> dispatch_;
    std::unordered_map<std::u16string, DISPID> identifiers_;  // by name as asked for
    std::unordered_map<DISPID, Parameters> parameters_;
    bool typesRead_ = false;
    ComPtr<ITypeInfo> types_;
};

}  // namespace velmor::platform
