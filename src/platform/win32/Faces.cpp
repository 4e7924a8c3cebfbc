#include "platform/win32/Faces.h"

#include <mutex>
#include <unordered_map>

#include "platform/win32/ComPtr.h"

namespace velmor::platform {

namespace {

FaceProvider registered = nullptr;

struct LiveFaces {
    std::mutex mutex;
    std::unordered_map<const automation::Object*, RegisteredFace*> byCore;
    std::unordered_map<IUnknown*, RegisteredFace*> byIdentity;
};

LiveFaces& liveFaces() {
    static LiveFaces& faces = *new LiveFaces;  // a late Release still finds it
    return faces;
}

// Null for a foreign object, whatever interfaces it claims to have.
automation::ObjectRef coreOf(IUnknown* unknown) {
    // An object's IUnknown pointer is its identity.
    const auto identity = ComPtr<IUnknown>(unknown).as<IUnknown>(IID_IUnknown);
    LiveFaces& faces = liveFaces();
    const std::scoped_lock lock(faces.mutex);
    const auto found = faces.byIdentity.find(identity.get());
    return found == faces.byIdentity.end() ? nullptr : found->second->core();
}

}  // namespace

IDispatch* liveFaceOf(const automation::Object& core, const std::function<std::unique_ptr<RegisteredFace>()>& make) {
    LiveFaces& faces = liveFaces();
    const std::scoped_lock lock(faces.mutex);
    const auto [place, isNew] = faces.byCore.try_emplace(&core, nullptr);
    // A face without references may still be registered, directly before it removes itself.
    if (!isNew && place->second->addReferenceIfAlive()) return place->second->identity();
    try {
        std::unique_ptr<RegisteredFace> face = make();
        faces.byIdentity[face->identity()] = face.get();
        place->second = face.release();
    } catch (...) {
        if (isNew) faces.byCore.erase(place);
        throw;
    }
    return place->second->identity();
}

void removeFace(const automation::Object& core, RegisteredFace& face) noexcept {
    LiveFaces& faces = liveFaces();
    const std::scoped_lock lock(faces.mutex);
    faces.byIdentity.erase(face.identity());
    const auto found = faces.byCore.find(&core);
    if (found != faces.byCore.end() && found->second == &face) faces.byCore.erase(found);
}

void registerFaceProvider(FaceProvider provider) noexcept {
    registered = provider;
}

IDispatch* faceOf(const automation::ObjectRef& object) {
    if (!object) return nullptr;
    if (IDispatch* foreign = foreignOf(object)) return foreign;
    IDispatch* const face = registered ? registered(object) : nullptr;
    return face ? face : adapterOf(object);
}

automation::ObjectRef objectOf(IDispatch* dispatch) {
    if (dispatch == nullptr) return nullptr;
    auto own = coreOf(dispatch);
    return own ? own : wrapForeign(dispatch);
}

}  // namespace velmor::platform
