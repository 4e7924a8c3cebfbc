#include "platform/win32/MachineObjects.h"

#include "platform/ClassTable.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"

namespace velmor::platform {
namespace {

// The system's own look-up takes more than registered names.
bool isRegistered(std::u16string_view className) {
    if (!isClassName(className)) return false;
    HKEY key = nullptr;
    const std::wstring path = wide(className) + L"\\CLSID";
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    RegCloseKey(key);
    return true;
}

[[noreturn]] void raiseFailure(std::u16string_view className, HRESULT result) {
    const Error reason = errorOf(result, nullptr);
    raiseCannotCreate(className, reason.description());
}

}  // namespace

automation::ObjectRef MachineObjects::create(std::u16string_view className) {
    if (auto object = createRegisteredClass(className)) return object;
    ComPtr<IDispatch> dispatch;
    const HRESULT result =
        CoCreateInstance(identifierOf(className), nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, IID_IDispatch,
                         dispatch.putVoid());
    if (FAILED(result)) raiseFailure(className, result);
    return objectOf(dispatch.get());
}

CLSID MachineObjects::identifierOf(std::u16string_view className) {
    std::u16string key(className);
    if (const auto known = identifiers_.find(key); known != identifiers_.end()) return known->second;
    if (!isRegistered(className)) raiseCannotCreate(className, u"the class is not registered");
    CLSID identifier{};
    const HRESULT result = CLSIDFromProgID(wide(className).c_str(), &identifier);
    if (FAILED(result)) raiseFailure(className, result);
    identifiers_.emplace(std::move(key), identifier);
    return identifier;
}

}  // namespace velmor::platform
