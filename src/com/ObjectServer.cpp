#include "com/ObjectServer.h"

#include "com/Guard.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Failure.h"

namespace velmor::com {

HRESULT createObjectFrom(automation::ObjectRef (*make)(), REFIID id, void** object) noexcept {
    if (!object) return E_POINTER;
    *object = nullptr;
    return guard(IID_IClassFactory, [&] {
        const auto face = platform::ComPtr<IDispatch>::attach(platform::faceOf(make()));
        if (!face) throw platform::Failure{E_FAIL};
        platform::check(face->QueryInterface(id, object));
    });
}

}  // namespace velmor::com
