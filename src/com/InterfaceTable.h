#pragma once

#include <vector>

#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// How a parameter is declared.
struct Parameter {
    VARTYPE type = VT_EMPTY;   // of the value itself; VT_UNKNOWN for interfaces of a type library
    IID interfaceId{};         // with VT_UNKNOWN: which one
    bool byReference = false;  // the member gets a pointer to the value
    bool optional = false;
    // The value of an argument that is left out; of type VT_EMPTY where none is declared.
    platform::ScopedVariant initial;
};

// One vtable entry as the type library describes it.
struct Member {
    DISPID id = DISPID_UNKNOWN;
    INVOKEKIND kind = INVOKE_FUNC;
    ULONG_PTR offset = 0;  // of the entry in the vtable, in bytes
    std::vector<Parameter> parameters;
    Parameter result;  // of type VT_EMPTY when there is none
};

// The members of one dual interface, as the type library declares them.
class InterfaceTable {
public:
    // From the interface's dispatch form, the one that a type library finds by its identifier.
    // Throws Failure.
    explicit InterfaceTable(ITypeInfo& dispatch);

    // Null when there is none of that kind.
    const Member* find(DISPID id, INVOKEKIND kind) const noexcept;

private:
    std::vector<Member> members_;
};

}  // namespace velmor::com
