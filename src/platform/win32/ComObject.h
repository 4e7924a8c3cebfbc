#pragma once

#include <atomic>

#include "platform/win32/Windows.h"

namespace velmor::platform {

// The references to a COM object, which is made with one. For any thread.
class ReferenceCount {
public:
    ReferenceCount() noexcept { ++objects; }
    ~ReferenceCount() { --objects; }
    ReferenceCount(const ReferenceCount&) = delete;
    ReferenceCount& operator=(const ReferenceCount&) = delete;

    // What keeps the DLL that contains this code loaded: COM objects, and locks of class factories.
    static inline std::atomic<long> objects{0};

    ULONG add() noexcept { return ++count_; }
    // The remaining references; at 0 the object is destroyed.
    ULONG release() noexcept { return --count_; }
    // False when no reference remains.
    bool addIfAlive() noexcept {
        ULONG count = count_;
        while (count != 0) {
            if (count_.compare_exchange_weak(count, count + 1)) return true;
        }
        return false;
    }

private:
    std::atomic<ULONG> count_{1};
};

// A COM object of these interfaces. The first one is its identity.
template <class Interface, class... Others>
class ComObject : public Interface, public Others... {
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = IsEqualIID(id, IID_IUnknown) ? static_cast<Interface*>(this) : nullptr;
        give<Interface>(id, object);
        (give<Others>(id, object), ...);
        if (!*object) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() noexcept override { return references_.add(); }
    ULONG STDMETHODCALLTYPE Release() noexcept override {
        const ULONG left = references_.release();
        if (left == 0) delete this;
        return left;
    }

protected:
    virtual ~ComObject() = default;

    ReferenceCount references_;

private:
    template <class One>
    void give(REFIID id, void** object) noexcept {
        if (IsEqualIID(id, __uuidof(One))) *object = static_cast<One*>(this);
    }
};

}  // namespace velmor::platform
