#pragma once

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmor::automation {

class Variant;

enum class InvokeKind { method, get, let, set };

// A late-bound automation object: what the platform's IDispatch gives, in portable form. The
// system's own classes and native handlers derive from it; on Windows a foreign IDispatch is
// wrapped in one.
class Object : public std::enable_shared_from_this<Object> {
public:
    virtual ~Object() = default;

    // Calls a member by name, without regard to case. Arguments come in the member's order; those
    // left out at the end take the member's defaults, as does one that is `missing` (see
    // Variant::missing). A let or set passes the new value as the last argument. A member that
    // takes an argument by reference leaves the new value in `arguments`. A get may be asked of
    // a method without arguments and the reverse, as scripts do. The empty name calls the
    // default member (the platform's DISPID_VALUE); an object without one throws 438 for it.
    // Throws Error 438 when there is no such member, 450 when the arguments are too many or a
    // required one is missing, and whatever the member itself raises.
    virtual Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) = 0;

    // The class name, as the automation function TypeName gives it.
    virtual std::u16string typeName() const = 0;
};

using ObjectRef = std::shared_ptr<Object>;

}  // namespace velmor::automation
