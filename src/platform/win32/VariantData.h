#pragma once

#include "automation/Variant.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

// The parts of VariantBridge that work on bare data: what a VARIANT, a by-reference argument and
// an array element have in common is a type and a place in memory.
namespace velmor::platform::detail {

// Variants in arrays in variants; more is refused with error 13.
constexpr int kNestingLimit = 64;

// Where the data of a VARIANT lies that is, or becomes, one of that type and no reference.
inline void* dataOf(VARIANT& value, VARTYPE type) noexcept {
    return type == VT_DECIMAL ? static_cast<void*>(&value) : &V_I8(&value);
}
inline const void* dataOf(const VARIANT& value) noexcept {
    return dataOf(const_cast<VARIANT&>(value), V_VT(&value));
}

automation::Variant readData(VARTYPE type, const void* data, int depth);
// The data's former contents are not looked at. False when the value is not of that very type.
bool writeData(VARTYPE type, void* data, const automation::Variant& value, int depth);
void fillVariant(const automation::Variant& value, VARIANT& result, int depth);
automation::Variant copyVariant(const VARIANT& value, int depth);

automation::Variant readArray(SAFEARRAY* array, VARTYPE declaredType, int depth);
SAFEARRAY* makeArray(const automation::Array& array, int depth);  // the caller destroys it

// The numbers are the same.
inline VARTYPE variantTypeOf(automation::VariantType type) noexcept {
    return static_cast<VARTYPE>(type);
}

// Carried, never read: a copy of the VARIANT, cleared with the last reference.
automation::UserDefined keepRecord(const VARIANT& value);

}  // namespace velmor::platform::detail
