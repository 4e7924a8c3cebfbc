#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "automation/Object.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// What an object of ours looks like from outside: a COM object that keeps it alive.
class RegisteredFace {
public:
    virtual ~RegisteredFace() = default;
    virtual automation::ObjectRef core() const = 0;
    virtual IDispatch* identity() noexcept = 0;  // what QueryInterface gives for IUnknown, too
    virtual bool addReferenceIfAlive() noexcept = 0;
};

// Which object is seen under which face. An object has at most one live face; the face keeps the
// object, the registry keeps neither. Any thread.
class FaceRegistry {
public:
    static FaceRegistry& instance();

    // The object's face with a reference for the caller: the live one, else what `make` gives.
    IDispatch* faceOf(const automation::Object& core, const std::function<std::unique_ptr<RegisteredFace>()>& make);
    // The object under any interface of a live face; null for everything foreign, whatever
    // interfaces it claims to have.
    automation::ObjectRef coreOf(IUnknown* unknown);
    // True while no face lives.
    bool isEmpty();

    // By the face itself, when its last reference is gone.
    void remove(const automation::Object& core, RegisteredFace& face) noexcept;

private:
    std::mutex mutex_;
    std::unordered_map<const automation::Object*, RegisteredFace*> byCore_;
    std::unordered_map<IUnknown*, RegisteredFace*> byIdentity_;
};

}  // namespace velmor::platform
