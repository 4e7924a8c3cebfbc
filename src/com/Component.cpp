// The component's own classes.

#include "com/EmptyHandler.h"
#include "com/Faces.h"
#include "com/Failure.h"
#include "com/Guard.h"
#include "com/Server.h"
#include "com/TypeLibrary.h"
#include "com/kvTagFace.h"
#include "com/kvTagInfoFace.h"
#include "platform/SystemServices.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Conversions.h"

namespace velmor::com {

namespace {

template <class FaceClass, class Core>
HRESULT create(REFIID id, void** object) noexcept {
    return guard(IID_IClassFactory, [&] {
        const auto face =
            ComPtr<FaceClass>::attach(faceFor<FaceClass>(std::make_shared<Core>(platform::systemServices())));
        check(face->QueryInterface(id, object));
    });
}

HRESULT createEmptyHandler(REFIID id, void** object) noexcept {
    return guard(IID_IClassFactory, [&] {
        const auto handler = ComPtr<EmptyHandler>::attach(new EmptyHandler);
        check(handler->QueryInterface(id, object));
    });
}

const ServedClass classes[] = {
    {CLSID_kvTag, L"kvVelmor3.kvTag", L"3.0", L"Velmor template or tag", &create<kvTagFace, kvTag>},
    {CLSID_kvTagInfo, L"kvVelmor3.kvTagInfo", L"3.0", L"Velmor handler catalogue", &create<kvTagInfoFace, kvTagInfo>},
    {CLSID_ITag4, L"kvVelmor3.ITag4", L"3.0", L"Velmor tag handler interface", &createEmptyHandler},
};

ComponentFaces faces;

}  // namespace

const Server& server() noexcept {
    static const Server component{classes, &LIBID_kvVelmor3};
    return component;
}

}  // namespace velmor::com

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID processEnds) {
    using namespace velmor;
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(module);
        platform::installConversions();
        platform::registerFaceProvider(&com::faces);
    } else if (reason == DLL_PROCESS_DETACH && !processEnds) {
        com::TypeLibrary::instance().release();
    }
    return TRUE;
}
