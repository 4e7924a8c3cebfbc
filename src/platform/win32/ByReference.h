#pragma once

#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

// Arguments by reference, as late-bound callers pass them: a typed reference (VT_BYREF), or a
// reference to a VARIANT (VT_BYREF | VT_VARIANT), which stands for the VARIANT it refers to, its
// variable. A variable may be a typed reference itself.
namespace velmor::platform {

// The variable that a reference to a VARIANT stands for; for everything else, the argument itself.
VARIANT& variableOf(VARIANT& argument) noexcept;

// True where the argument, or the variable that it stands for, is a reference to nothing.
bool isNullReference(VARIANT& argument) noexcept;

// Moves the value into the variable. A typed reference keeps its type: the value is converted, and
// what stood there is released. DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW where it does not convert;
// the variable is then as it was.
HRESULT assignVariable(VARIANT& variable, ScopedVariant value, LCID locale) noexcept;

// The platform's conversion of a value or a typed reference. An object converts through its default
// value; a chain of objects without an end is a type mismatch. `result` may not be the source.
HRESULT convertVariant(ScopedVariant& result, const VARIANT& source, LCID locale, VARTYPE type) noexcept;

// True for the types of interface pointers.
bool isInterface(VARTYPE type) noexcept;

// The bytes that a value of that type takes in memory, and in a VARIANT; 0 for types without values
// of their own. Arrays are their descriptor's pointer.
std::size_t sizeOfData(VARTYPE type) noexcept;

}  // namespace velmor::platform
