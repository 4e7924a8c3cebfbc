#pragma once

#include <memory>
#include <utility>

#include "com/DualObject.h"
#include "platform/win32/FaceRegistry.h"

namespace velmor::com {

// The face of a core object: keeps it alive, and is the only one that it has. Derived classes
// translate members, and have no rule of their own.
template <class Interface, class Core, const IID& interfaceId, const CLSID& classId>
class Face : public DualObject<Interface, interfaceId, classId>, public platform::RegisteredFace {
public:
    explicit Face(std::shared_ptr<Core> core) : core_(std::move(core)) {}

    automation::ObjectRef core() const final { return core_; }
    IDispatch* identity() noexcept final { return static_cast<Interface*>(this); }
    bool addReferenceIfAlive() noexcept final { return this->references_.addIfAlive(); }

protected:
    void released() noexcept override {
        platform::FaceRegistry::instance().remove(*core_, *this);
        delete this;
    }

    const std::shared_ptr<Core> core_;
};

// The face of a core object with a reference for the caller; null for null.
template <class FaceClass, class Core>
FaceClass* faceFor(const std::shared_ptr<Core>& core) {
    if (!core) return nullptr;
    const auto make = [&] { return std::make_unique<FaceClass>(core); };
    IDispatch* face = platform::FaceRegistry::instance().faceOf(*core, make);
    return static_cast<FaceClass*>(face);
}

}  // namespace velmor::com
