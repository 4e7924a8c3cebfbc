#pragma once

#include <utility>

#include "platform/win32/Windows.h"

namespace velmor::platform {

// Owns one reference to a COM object, or none.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(std::nullptr_t) noexcept {}
    // Adds a reference.
    explicit ComPtr(Interface* pointer) noexcept : pointer_(pointer) {
        if (pointer_) pointer_->AddRef();
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_) pointer_->Release();
    }

    // Takes over the reference that the caller owns.
    static ComPtr attach(Interface* pointer) noexcept {
        ComPtr result;
        result.pointer_ = pointer;
        return result;
    }
    // Gives up the reference.
    Interface* detach() noexcept { return std::exchange(pointer_, nullptr); }

    Interface* get() const noexcept { return pointer_; }
    Interface* operator->() const noexcept { return pointer_; }
    explicit operator bool() const noexcept { return pointer_ != nullptr; }

    // The place for a reference from a call; releases the old one first.
    Interface** put() noexcept {
        *this = nullptr;
        return &pointer_;
    }
    void** putVoid() noexcept { return reinterpret_cast<void**>(put()); }

    // Another interface of the object; none if it lacks it.
    template <class Other>
    ComPtr<Other> as(REFIID id) const noexcept {
        ComPtr<Other> other;
        if (pointer_ && FAILED(pointer_->QueryInterface(id, other.putVoid()))) return nullptr;
        return other;
    }

private:
    Interface* pointer_ = nullptr;
};

}  // namespace velmor::platform
