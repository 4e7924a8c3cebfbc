#include "com/FaceRegistry.h"

namespace velmor::com {

FaceRegistry& FaceRegistry::instance() noexcept {
    static FaceRegistry registry;
    return registry;
}

IDispatch* FaceRegistry::faceOf(const automation::Object& core, const std::function<RegisteredFace*()>& make) {
    const std::lock_guard lock(mutex_);
    RegisteredFace*& slot = byCore_[&core];
    // A face whose last reference has just gone may still stand here, waiting to remove itself.
    if (slot && slot->addReferenceIfAlive()) return slot->identity();
    RegisteredFace* face = nullptr;
    try {
        face = make();
        byIdentity_[face->identity()] = face;
    } catch (...) {
        if (!slot) byCore_.erase(&core);
        throw;
    }
    slot = face;
    return face->identity();
}

automation::ObjectRef FaceRegistry::coreOf(IUnknown* unknown) {
    platform::ComPtr<IUnknown> identity;
    if (!unknown || FAILED(unknown->QueryInterface(IID_IUnknown, identity.putVoid()))) return nullptr;
    const std::lock_guard lock(mutex_);
    const auto found = byIdentity_.find(identity.get());
    return found == byIdentity_.end() ? nullptr : found->second->core();
}

void FaceRegistry::remove(const automation::Object& core, RegisteredFace& face) noexcept {
    const std::lock_guard lock(mutex_);
    byIdentity_.erase(face.identity());
    const auto found = byCore_.find(&core);
    if (found != byCore_.end() && found->second == &face) byCore_.erase(found);
}

}  // namespace velmor::com
