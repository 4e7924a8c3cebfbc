#include "platform/win32/Faces.h"

namespace velmor::platform {

namespace {

FaceProvider* registered = nullptr;

}  // namespace

void registerFaceProvider(FaceProvider* provider) noexcept {
    registered = provider;
}

FaceProvider* faceProvider() noexcept {
    return registered;
}

IDispatch* faceOf(const automation::ObjectRef& object) {
    if (!object) return nullptr;
    if (IDispatch* foreign = foreignOf(object)) return foreign;
    if (registered != nullptr) {
        if (IDispatch* face = registered->faceOf(object)) return face;
    }
    return adapterOf(object);
}

automation::ObjectRef ownObjectOf(IUnknown* unknown) {
    if (unknown == nullptr) return nullptr;
    if (registered != nullptr) {
        if (auto core = registered->coreOf(unknown)) return core;
    }
    return adaptedObjectOf(unknown);
}

automation::ObjectRef objectOf(IDispatch* dispatch) {
    if (dispatch == nullptr) return nullptr;
    if (auto own = ownObjectOf(dispatch)) return own;
    return wrapForeign(dispatch);
}

}  // namespace velmor::platform
