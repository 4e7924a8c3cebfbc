#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "automation/Arguments.h"
#include "platform/win32/Faces.h"
#include "platform/win32/Failure.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/Windows.h"
#include "text/privStrCat.h"
//
#include "kvVelmor3.h"  // after windows.h

namespace velmor::automation {
class Enumeration;
}

namespace velmor::com {

// What a member gets, as the engine wants it. Nothing is taken over from the caller.

using platform::objectOf;

inline automation::TextArgument textOf(BSTR text) noexcept {
    return automation::TextArgument(platform::viewOf(text));
}
inline automation::Variant valueOf(const VARIANT& value) {
    return platform::fromVariant(value);
}
inline bool isTrue(VARIANT_BOOL value) noexcept {
    return value != VARIANT_FALSE;
}

// A by-reference value, and what the member made of it. A null reference is refused where it is needed; else it is the
// empty text or 0.
inline void needed(const void* place) {
    platform::check(place ? S_OK : E_POINTER);
}
inline automation::TextArgument textAt(const BSTR* place) noexcept {
    return textOf(place ? *place : nullptr);
}
inline std::int32_t numberAt(const long* place) noexcept {
    return place ? *place : 0;
}
inline void putBack(BSTR* place, automation::TextReference& text) {
    if (place && text.made()) SysFreeString(std::exchange(*place, platform::makeBstr(*text.made())));
}
inline void putBack(long* place, std::int32_t number) noexcept {
    if (place) *place = number;
}

// What a member gives, as the platform wants it. A type that is not listed does not compile.
inline void give(BSTR& place, const std::u16string& value) {
    place = platform::makeBstr(value);
}
inline void give(BSTR& place, const std::shared_ptr<const privStrCat>& value) {  // never null
    place = platform::makeBstr(value->contiguous());
}
inline void give(VARIANT& place, const automation::Variant& value) {
    platform::toVariant(value, place);
}
inline void give(IDispatch*& place, const automation::ObjectRef& value) {
    place = platform::faceOf(value);
}
template <class Number>
requires std::is_arithmetic_v<Number>
void give(Number& place, std::type_identity_t<Number> value) {
    place = value;
}
inline void give(short& place, bool value) {
    place = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void give(double& place, automation::Date value) {
    place = value.days;
}
template <std::derived_from<IUnknown> Interface>
void give(Interface*& place, std::type_identity_t<Interface>* value) {
    place = value;  // the reference goes with it
}

void give(IUnknown*& place, std::shared_ptr<automation::Enumeration> items);  // (Enumerator.cpp)

}  // namespace velmor::com
