#include "platform/win32/Faces.h"

#include "platform/win32/FaceRegistry.h"

namespace velmor::platform {

namespace {

FaceProvider registered = nullptr;

}  // namespace

void registerFaceProvider(FaceProvider provider) noexcept {
    registered = provider;
}

IDispatch* faceOf(const automation::ObjectRef& object) {
    if (!object) return nullptr;
    if (IDispatch* foreign = foreignOf(object)) return foreign;
    if (registered != nullptr) {
        if (IDispatch* face = registered(object)) return face;
    }
    return adapterOf(object);
}

automation::ObjectRef objectOf(IDispatch* dispatch) {
    if (dispatch == nullptr) return nullptr;
    if (auto own = FaceRegistry::instance().coreOf(dispatch)) return own;
    return wrapForeign(dispatch);
}

}  // namespace velmor::platform
