#pragma once

#include <string>

#include "automation/Variant.h"
#include "com/Failure.h"
#include "platform/win32/Faces.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// What a member gets, as the engine wants it. Nothing is taken over from the caller.

using platform::objectOf;
using platform::viewOf;

inline std::u16string textOf(BSTR text) {
    return std::u16string(viewOf(text));
}

inline automation::Variant valueOf(const VARIANT& value) {
    return platform::fromVariant(value);
}

inline bool isTrue(VARIANT_BOOL value) noexcept {
    return value != VARIANT_FALSE;
}

// What a by-reference argument refers to; a null reference is refused.
template <class Value>
Value& given(Value* reference) {
    if (!reference) throw Failure{E_POINTER};
    return *reference;
}

}  // namespace velmor::com
