#pragma once

#include "automation/Variant.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

// The parts of VariantBridge for raw data: a VARIANT, a by-reference argument and an array element all have a
// type and a place in memory.
namespace velmor::platform::detail {

// The depth of variants in arrays in variants; more is refused with error 13.
constexpr int kNestingLimit = 64;

// The place of the data in a VARIANT of that type that is not a reference.
inline void* dataOf(VARIANT& value, VARTYPE type) noexcept {
    return type == VT_DECIMAL ? static_cast<void*>(&value) : &V_I8(&value);
}
inline const void* dataOf(const VARIANT& value) noexcept {
    return dataOf(const_cast<VARIANT&>(value), V_VT(&value));
}

automation::Variant readData(VARTYPE type, const void* data, int depth);
// The former content of the data is ignored. False when the value has another type.
bool writeData(VARTYPE type, void* data, const automation::Variant& value, int depth);
void fillVariant(const automation::Variant& value, VARIANT& result, int depth);
automation::Variant copyVariant(const VARIANT& value, int depth);

automation::Variant readArray(SAFEARRAY* array, VARTYPE declaredType, int depth);
SAFEARRAY* makeArray(const automation::Array& array, int depth);  // the caller destroys it

// The numbers are the same.
inline VARTYPE variantTypeOf(automation::VariantType type) noexcept {
    return static_cast<VARTYPE>(type);
}

// Kept but never read: a copy of the VARIANT, cleared with the last reference.
automation::UserDefined keepRecord(const VARIANT& value);

}  // namespace velmor::platform::detail
