#pragma once

#include <functional>
#include <memory>

#include "automation/Object.h"
#include "platform/win32/Windows.h"

namespace velmor::platform {

// How objects pass the boundary. An object of ours goes out under a face; a face that comes back
// gives the same object; an object of somebody else is wrapped and goes out as itself again.

// com/ registers the faces of the component's own classes through this: the object's one face, with a reference for the
// caller; null when it is not of a class that there is a face for.
using FaceProvider = IDispatch* (*)(const automation::ObjectRef& object);

// Null withdraws it.
void registerFaceProvider(FaceProvider provider) noexcept;

// The COM object that wraps an object of ours and keeps it alive.
class RegisteredFace {
public:
    virtual ~RegisteredFace() = default;
    virtual automation::ObjectRef core() const = 0;
    virtual IDispatch* identity() noexcept = 0;  // also the result of QueryInterface for IUnknown
    virtual bool addReferenceIfAlive() noexcept = 0;
};

// The object's face with a reference for the caller: the live one, of which there is at most one, else the result of
// `make`. For any thread, like the other functions here.
IDispatch* liveFaceOf(const automation::Object& core, const std::function<std::unique_ptr<RegisteredFace>()>& make);
// Called by the face itself after its last release.
void removeFace(const automation::Object& core, RegisteredFace& face) noexcept;

// The interface under which any object goes out, with a reference for the caller: the provider's
// face, the foreign object itself, or a generic adapter. Null for null. Throws Error 7.
IDispatch* faceOf(const automation::ObjectRef& object);

// The object for an interface that came in (no reference is taken over): the core object of a
// live face, whatever interface of it, else the wrapped foreign object. Null for null.
automation::ObjectRef objectOf(IDispatch* dispatch);

// A foreign object as a late-bound Object; it keeps a reference of its own. (ForeignObject.cpp)
automation::ObjectRef wrapForeign(IDispatch* dispatch);
// What such a wrapper holds, with a reference for the caller; null when it is no wrapper.
IDispatch* foreignOf(const automation::ObjectRef& object);

// Serves any Object as IDispatch with identifiers given out on demand; the same adapter as long as
// one lives. With a reference for the caller; the object is not null. (GenericAdapter.cpp)
IDispatch* adapterOf(const automation::ObjectRef& object);
}  // namespace velmor::platform
