// A library of native objects whose classes show every behaviour that the engine must accept.

#include <stdexcept>

#include "automation/Errors.h"
#include "automation/Variant.h"
#include "platform/NativeObject.h"
#include "text/Compare.h"

namespace {

using velmor::automation::InvokeKind;
using velmor::automation::Variant;

// Returns its argument; as a handler, the command of the tag.
class Echo : public velmor::automation::Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        if (name == u"Interface") return 5;
        if (name == u"Dispose") return {};
        if (name == u"GetTagValue") return arguments[0].object()->invoke(u"CommandName", InvokeKind::get, {});
        if (!velmor::equalIgnoringCase(name, u"Echo")) velmor::automation::raiseNoSuchMember(name);
        return arguments.empty() ? Variant() : arguments[0];
    }
    std::u16string typeName() const override { return u"Echo"; }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) int velmorCreateObject(int abiVersion, const char16_t* className,
                                                                         std::size_t length,
                                                                         velmor::automation::ObjectRef* result) {
    const std::u16string_view name(className, length);
    if (abiVersion != velmor::velmorNativeAbi || name == u"Test.Abi") return velmor::velmorOtherAbi;
    if (name == u"Test.Throws") throw std::runtime_error("thrown inside");
    if (name == u"Test.Null") return velmor::velmorCreated;
    if (name == u"Test.Fails") return velmor::velmorCreationFailed;
    if (!velmor::equalIgnoringCase(name.substr(0, 9), u"Test.Echo")) return velmor::velmorUnknownClass;
    *result = std::make_shared<Echo>();
    return velmor::velmorCreated;
}
