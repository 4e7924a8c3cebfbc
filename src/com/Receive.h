#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/Variant.h"
#include "com/Failure.h"
#include "com/Guard.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// What a member gets, as the engine wants it. Nothing is taken over from the caller.

using platform::objectOf;
using platform::viewOf;

inline automation::Variant valueOf(const VARIANT& value) {
    return platform::fromVariant(value);
}

inline bool isTrue(VARIANT_BOOL value) noexcept {
    return value != VARIANT_FALSE;
}

// A text for a member that reads it, or keeps it.
class TextArgument {
public:
    explicit TextArgument(BSTR text) noexcept : text_(text) {}
    operator std::u16string_view() const noexcept { return viewOf(text_); }
    operator std::u16string() const { return std::u16string(viewOf(text_)); }

private:
    BSTR text_;
};

// A null reference is refused unless the argument is optional.
enum class Needed { yes, no };
template <class Value>
Value* given(Value* reference, Needed needed) {
    if (!reference && needed == Needed::yes) throw Failure{E_POINTER};
    return reference;
}

// A by-reference text for a member that reads it, or changes it in place; putBack gives the host what the second made.
class TextReference {
public:
    explicit TextReference(BSTR* place, Needed needed = Needed::yes) : place_(given(place, needed)) {}

    operator std::u16string_view() const noexcept { return view(); }
    operator std::u16string&() {
        lent_ = place_ != nullptr;
        text_ = view();
        return text_;
    }
    void putBack() const {
        if (lent_) replaceText(*place_, text_);
    }

private:
    std::u16string_view view() const noexcept { return place_ ? viewOf(*place_) : std::u16string_view(); }

    BSTR* place_;
    std::u16string text_;
    bool lent_ = false;
};

// The same for a long; 0 where it was left out.
class LongReference {
public:
    explicit LongReference(long* place, Needed needed = Needed::yes)
        : place_(given(place, needed)), number_(place ? *place : 0) {}

    operator std::int32_t&() noexcept { return number_; }
    void putBack() const noexcept {
        if (place_) *place_ = number_;
    }

private:
    long* place_;
    std::int32_t number_;
};

}  // namespace velmor::com
