// The component's own classes.

#include <memory>
#include <type_traits>

#include "com/Guard.h"
#include "com/ITag4Face.h"
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
        std::shared_ptr<Core> core;
        if constexpr (std::is_default_constructible_v<Core>) {
            core = std::make_shared<Core>();
        } else {
            core = std::make_shared<Core>(platform::systemServices());
        }
        platform::check(ComPtr<FaceClass>::attach(faceFor<FaceClass>(core))->QueryInterface(id, object));
    });
}

const ServedClass classes[] = {
    {CLSID_kvTag, L"kvVelmor3.kvTag", L"3.0", L"Velmor template or tag", &create<kvTagFace, kvTag>},
    {CLSID_kvTagInfo, L"kvVelmor3.kvTagInfo", L"3.0", L"Velmor handler catalogue", &create<kvTagInfoFace, kvTagInfo>},
    {CLSID_ITag4, L"kvVelmor3.ITag4", L"3.0", L"Velmor tag handler interface", &create<ITag4Face, EmptyHandler>},
};

}  // namespace

const Server& server() noexcept {
    static const Server component{classes, &LIBID_kvVelmor3, &coreFaceOf};
    return component;
}

}  // namespace velmor::com
