#pragma once

#include <functional>
#include <mutex>
#include <unordered_map>

#include "automation/Object.h"
#include "platform/win32/ComPtr.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// A live face, as the registry sees it.
class RegisteredFace {
public:
    virtual automation::ObjectRef core() const = 0;
    virtual IDispatch* identity() noexcept = 0;  // what QueryInterface gives for IUnknown, too
    virtual bool addReferenceIfAlive() noexcept = 0;

protected:
    ~RegisteredFace() = default;
};

// Which core object is seen under which face. A core object has at most one live face; the face
// keeps the core object, the registry keeps neither. Any thread.
class FaceRegistry {
public:
    static FaceRegistry& instance() noexcept;

    // The core object's face with a reference for the caller: the live one, else what `make` gives.
    IDispatch* faceOf(const automation::Object& core, const std::function<RegisteredFace*()>& make);
    // The core object behind any interface of a live face; null for everything foreign, whatever
    // interfaces it claims to have.
    automation::ObjectRef coreOf(IUnknown* unknown);

    // By the face itself, when its last reference is gone.
    void remove(const automation::Object& core, RegisteredFace& face) noexcept;

private:
    std::mutex mutex_;
    std::unordered_map<const automation::Object*, RegisteredFace*> byCore_;
    std::unordered_map<IUnknown*, RegisteredFace*> byIdentity_;
};

}  // namespace velmor::com
