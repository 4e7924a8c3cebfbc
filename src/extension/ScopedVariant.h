#pragma once

// Needs <oleauto.h> before it.
namespace velmor::com {

// Owns a VARIANT and its content. Empty at first and after a move.
class ScopedVariant {
public:
    ScopedVariant() noexcept { VariantInit(&value_); }
    // Takes ownership of the value's content.
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

    // Gives up the value.
    VARIANT detach() noexcept {
        const VARIANT given = value_;
        VariantInit(&value_);
        return given;
    }

private:
    VARIANT value_;
};

}  // namespace velmor::com
