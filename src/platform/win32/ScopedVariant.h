#pragma once

#include "platform/win32/Windows.h"

namespace velmor::platform {

// Owns a VARIANT and what it holds. Starts empty; moved from, it is empty again.
class ScopedVariant {
public:
    ScopedVariant() noexcept { VariantInit(&value_); }
    // Takes over what the value holds.
    explicit ScopedVariant(const VARIANT& value) noexcept : value_(value) {}
    ScopedVariant(const ScopedVariant&) = delete;
    ScopedVariant(ScopedVariant&& other) noexcept : value_(other.detach()) {}
    ScopedVariant& operator=(ScopedVariant&& other) noexcept {
        if (this != &other) {
            VariantClear(&value_);
            value_ = other.detach();
        }
        return *this;
    }
    ~ScopedVariant() { VariantClear(&value_); }

    VARIANT& operator*() noexcept { return value_; }
    const VARIANT& operator*() const noexcept { return value_; }
    VARIANT* operator->() noexcept { return &value_; }
    const VARIANT* operator->() const noexcept { return &value_; }
    VARIANT* get() noexcept { return &value_; }
    const VARIANT* get() const noexcept { return &value_; }

    // Where a call stores a value that it gives; what was held is let go first.
    VARIANT* put() noexcept {
        VariantClear(&value_);
        return &value_;
    }
    // Gives the value away.
    VARIANT detach() noexcept {
        const VARIANT given = value_;
        VariantInit(&value_);
        return given;
    }

private:
    VARIANT value_;
};

}  // namespace velmor::platform
