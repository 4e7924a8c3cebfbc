// The component's own classes.

#include "com/EmptyHandler.h"
#include "com/Faces.h"
#include "com/Failure.h"
#include "com/Guard.h"
#include "com/Server.h"
#include "com/kvTagFace.h"
#include "com/kvTagInfoFace.h"
#include "platform/SystemServices.h"
#include "platform/win32/ComPtr.h"

namespace velmor::com {

namespace {

using platform::ComPtr;

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
    static const Server component{classes, &LIBID_kvVelmor3, &faces};
    return component;
}

}  // namespace velmor::com
