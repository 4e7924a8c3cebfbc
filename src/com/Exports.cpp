// The entry points of an in-process server. extension/ComHandler.def exports them without decoration.

#include "com/Guard.h"
#include "com/Registration.h"
#include "com/Server.h"
#include "com/TypeLibrary.h"
#include "extension/ComObject.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Conversions.h"
#include "platform/win32/Failure.h"
#include "platform/win32/Windows.h"

using namespace velmor;
using namespace velmor::com;

// The conversions are installed here, before any thread converts: later that would not be safe.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID processEnds) {
    if (reason == DLL_PROCESS_ATTACH) {
        platform::installConversions();
        platform::registerFaceProvider(server().faces);
    } else if (reason == DLL_PROCESS_DETACH && !processEnds) {
        releaseTypeLibrary();
    }
    return TRUE;
}

STDAPI DllGetClassObject(REFCLSID classId, REFIID id, void** object) {
    if (!object) return E_POINTER;
    *object = nullptr;
    for (const ServedClass& served : server().classes) {
        if (!IsEqualCLSID(served.id, classId)) continue;
        const auto make = [&served](REFIID wanted, void** made) noexcept {
            return guard(IID_IClassFactory, [&] {
                const auto face = platform::ComPtr<IDispatch>::attach(platform::faceOf(served.make()));
                platform::check(face ? face->QueryInterface(wanted, made) : E_FAIL);
            });
        };
        return giveNew(new (std::nothrow) ClassFactory(make), id, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
    return ReferenceCount::objects == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    return platform::outcomeOf([] { registerServer(server(), HKEY_LOCAL_MACHINE); });
}

STDAPI DllUnregisterServer() {
    return platform::outcomeOf([] { unregisterServer(server(), HKEY_LOCAL_MACHINE); });
}

// "regsvr32 /n /i:user": for the current user alone. "regsvr32 /n /i:surrogate": with a surrogate, for everyone.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    if (!command || !*command) return install ? DllRegisterServer() : DllUnregisterServer();
    const bool forUser = _wcsicmp(command, L"user") == 0, withSurrogate = _wcsicmp(command, L"surrogate") == 0;
    if (!forUser && !withSurrogate) return E_INVALIDARG;
    const HKEY root = forUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    return platform::outcomeOf([&] {
        if (!install) return unregisterServer(server(), root);
        registerServer(server(), root, withSurrogate ? Surrogate::system : Surrogate::none);
    });
}
