// The entry points of an in-process server. extension/ComHandler.def exports them without decoration.

#include <new>

#include "com/Guard.h"
#include "com/Registration.h"
#include "com/Server.h"
#include "com/TypeLibrary.h"
#include "platform/win32/ComObject.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Conversions.h"
#include "platform/win32/Failure.h"
#include "platform/win32/Windows.h"

using namespace velmor;
using namespace velmor::com;

namespace {

// Makes the objects of one served class.
class ClassFactory final : public platform::ComObject<IClassFactory> {
public:
    explicit ClassFactory(const ServedClass& served) noexcept : served_(served) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (outer) return CLASS_E_NOAGGREGATION;
        return guard(IID_IClassFactory, [&] {
            const auto face = platform::ComPtr<IDispatch>::attach(platform::faceOf(served_.make()));
            platform::check(face ? face->QueryInterface(id, object) : E_FAIL);
        });
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        platform::ReferenceCount::objects += lock ? 1 : -1;
        return S_OK;
    }

private:
    const ServedClass& served_;
};

HRESULT giveFactory(const ServedClass& served, REFIID id, void** object) noexcept {
    IClassFactory* factory = new (std::nothrow) ClassFactory(served);
    if (!factory) return E_OUTOFMEMORY;
    const HRESULT code = factory->QueryInterface(id, object);
    factory->Release();
    return code;
}

}  // namespace

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
        if (IsEqualCLSID(served.id, classId)) return giveFactory(served, id, object);
    }
    return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
    return platform::ReferenceCount::objects == 0 ? S_OK : S_FALSE;
}

STDAPI DllRegisterServer() {
    return platform::outcomeOf([] { registerServer(server(), Audience::everyone); });
}

STDAPI DllUnregisterServer() {
    return platform::outcomeOf([] { unregisterServer(server(), Audience::everyone); });
}

// "regsvr32 /n /i:user": for the current user alone. "regsvr32 /n /i:surrogate": with a surrogate, for everyone.
STDAPI DllInstall(BOOL install, LPCWSTR command) {
    if (!command || !*command) return install ? DllRegisterServer() : DllUnregisterServer();
    const bool forUser = _wcsicmp(command, L"user") == 0, withSurrogate = _wcsicmp(command, L"surrogate") == 0;
    if (!forUser && !withSurrogate) return E_INVALIDARG;
    const Audience audience = forUser ? Audience::currentUser : Audience::everyone;
    return platform::outcomeOf([&] {
        if (!install) return unregisterServer(server(), audience);
        registerServer(server(), audience, withSurrogate ? Surrogate::system : Surrogate::none);
    });
}
