#include "platform/win32/FaceRegistry.h"

#include "platform/win32/ComPtr.h"

namespace velmor::platform {

FaceRegistry& FaceRegistry::instance() {
    static FaceRegistry& registry = *new FaceRegistry;  // a late Release still finds it
    return registry;
}

IDispatch* FaceRegistry::faceOf(const automation::Object& core,
                                const std::function<std::unique_ptr<RegisteredFace>()>& make) {
    const std::scoped_lock lock(mutex_);
    const auto [place, isNew] = byCore_.try_emplace(&core, nullptr);
    // A face without references may still be registered, directly before it removes itself.
    if (!isNew && place->second->addReferenceIfAlive()) return place->second->identity();
    try {
        std::unique_ptr<RegisteredFace> face = make();
        byIdentity_[face->identity()] = face.get();
        place->second = face.release();
    } catch (...) {
        if (isNew) byCore_.erase(place);
        throw;
    }
    return place->second->identity();
}

automation::ObjectRef FaceRegistry::coreOf(IUnknown* unknown) {
    // An object's IUnknown pointer is its identity.
    const auto identity = ComPtr<IUnknown>(unknown).as<IUnknown>(IID_IUnknown);
    const std::scoped_lock lock(mutex_);
    const auto found = byIdentity_.find(identity.get());
    return found == byIdentity_.end() ? nullptr : found->second->core();
}

bool FaceRegistry::isEmpty() {
    const std::scoped_lock lock(mutex_);
    return byIdentity_.empty();
}

void FaceRegistry::remove(const automation::Object& core, RegisteredFace& face) noexcept {
    const std::scoped_lock lock(mutex_);
    byIdentity_.erase(face.identity());
    const auto found = byCore_.find(&core);
    if (found != byCore_.end() && found->second == &face) byCore_.erase(found);
}

}  // namespace velmor::platform
