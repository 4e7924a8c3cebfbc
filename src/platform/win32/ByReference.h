#pragma once

#include "automation/Variant.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

// Arguments by reference, as late-bound callers pass them: a typed reference (VT_BYREF), or a
// reference to a VARIANT (VT_BYREF | VT_VARIANT), which means the VARIANT that it refers to, its
// variable. A variable may be a typed reference itself.
namespace velmor::platform {

// The variable that a reference to a VARIANT means; for everything else, the argument itself.
VARIANT& variableOf(VARIANT& argument) noexcept;

// Stores the new value of a by-reference argument. A typed reference keeps its type: the value is
// converted, and what was there is released. DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW where it does not
// convert, or the argument is no reference; everything is then as it was. Throws Error 7.
HRESULT assignReference(VARIANT& argument, const automation::Variant& value);

// The value in that type, as the platform converts it; an object converts through its default value.
// DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW where it does not convert. Throws Error 7.
HRESULT convertVariant(const automation::Variant& value, VARTYPE type, ScopedVariant& result);

// True for the types of interface pointers.
bool isInterface(VARTYPE type) noexcept;

// The bytes that a value of that type takes in memory, and in a VARIANT; 0 for types without values
// of their own. Arrays are their descriptor's pointer.
std::size_t sizeOfData(VARTYPE type) noexcept;

}  // namespace velmor::platform
