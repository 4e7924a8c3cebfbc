#include "platform/win32/MachineObjects.h"

#include "platform/ClassTable.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"

namespace velmor::platform {
namespace {

// From a manifest of the host or the registry; the manifest takes precedence.
CLSID identifierOf(std::u16string_view className) {
    if (!isClassName(className)) raiseCannotCreate(className, u"it is no class name");
    CLSID identifier{};
    if (FAILED(CLSIDFromProgID(wide(className).c_str(), &identifier))) {
        raiseCannotCreate(className, u"the class is not registered");
    }
    return identifier;
}

}  // namespace

automation::ObjectRef MachineObjects::create(std::u16string_view className) {
    if (auto object = createRegisteredClass(className)) return object;
    ComPtr<IDispatch> dispatch;
    const HRESULT result =
        CoCreateInstance(identifierOf(className), nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                         dispatch.putVoid());
    if (FAILED(result)) raiseCannotCreate(className, errorOf(result, nullptr).description());
    return objectOf(dispatch.get());
}

}  // namespace velmor::platform
