#pragma once

#include <atomic>
#include <new>

// What every in-process server has: the component, and libraries of handlers, which get this header with
// ComHandler.cpp. Needs <windows.h> before it.
namespace velmor::com {

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
        offer<Interface>(id, object);
        (offer<Others>(id, object), ...);
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
    void offer(REFIID id, void** object) noexcept {
        if (IsEqualIID(id, __uuidof(One))) *object = static_cast<One*>(this);
    }
};

// Gives a new object in one of its interfaces; null: there was no memory for it.
template <class Object>
HRESULT giveNew(Object* made, REFIID id, void** object) noexcept {
    if (!made) return E_OUTOFMEMORY;
    const HRESULT code = made->QueryInterface(id, object);
    made->Release();
    return code;
}

// `Make` gives an object of one class as QueryInterface gives an interface.
template <class Make>
class ClassFactory final : public ComObject<IClassFactory> {
public:
    explicit ClassFactory(const Make& make) noexcept : make_(make) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) noexcept override {
        if (!object) return E_POINTER;
        *object = nullptr;
        return outer ? CLASS_E_NOAGGREGATION : make_(id, object);
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) noexcept override {
        ReferenceCount::objects += lock ? 1 : -1;
        return S_OK;
    }

private:
    const Make make_;
};

}  // namespace velmor::com
