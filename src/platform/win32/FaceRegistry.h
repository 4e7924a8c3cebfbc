#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "automation/Object.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// The COM object that wraps an object of ours and keeps it alive.
class RegisteredFace {
public:
    virtual ~RegisteredFace() = default;
    virtual automation::ObjectRef core() const = 0;
    virtual IDispatch* identity() noexcept = 0;  // also the result of QueryInterface for IUnknown
    virtual bool addReferenceIfAlive() noexcept = 0;
};

// The faces of objects. An object has at most one live face; the face keeps the object alive, the registry
// neither. For any thread.
class FaceRegistry {
public:
    static FaceRegistry& instance();

    // The object's face with a reference for the caller: the live one, else the result of `make`.
    IDispatch* faceOf(const automation::Object& core, const std::function<std::unique_ptr<RegisteredFace>()>& make);
    // The object of any interface of a live face; null for foreign objects, whatever interfaces they claim to
    // have.
    automation::ObjectRef coreOf(IUnknown* unknown);
    // True if no face exists.
    bool isEmpty();

    // Called by the face itself after its last release.
    void remove(const automation::Object& core, RegisteredFace& face) noexcept;

private:
    std::mutex mutex_;
    std::unordered_map<const automation::Object*, RegisteredFace*> byCore_;
    std::unordered_map<IUnknown*, RegisteredFace*> byIdentity_;
};

}  // namespace velmor::platform
