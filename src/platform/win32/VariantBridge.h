#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "automation/Variant.h"
#include "platform/win32/Windows.h"
#include "text/Error.h"
//
#include "extension/ScopedVariant.h"  // after windows.h

namespace velmor::platform {

using com::ScopedVariant;

inline constexpr VARTYPE variantReference = VT_BYREF | VT_VARIANT;

// Between automation::Variant and the platform's VARIANT. Ownership is the platform's: what comes
// in is read and never released, what goes out belongs to the receiver.

// A copy of the text; the caller frees it (SysFreeString). Throws Error 7.
BSTR makeBstr(std::u16string_view text);
// Length-prefixed, so that U+0000 passes; null is the empty text. An odd last byte is dropped.
std::u16string_view viewOf(BSTR text) noexcept;

// Fills `result`, whose former contents are not looked at. Objects go out by faceOf. Throws Error 7;
// `result` is then VT_EMPTY.
void toVariant(const automation::Variant& value, VARIANT& result);
ScopedVariant toVariant(const automation::Variant& value);

// Arrays and records are copied whole, and never read. By-reference values are followed. Types that have no counterpart
// are widened without loss: signed bytes to Integer, 16-bit unsigned to Long, larger ones to Long where they fit, else
// to Decimal. Objects come in by objectOf, also those that come as an IUnknown; one that is no IDispatch is a data
// object. Throws Error 13 for a type that is no variant type, 7 without memory.
automation::Variant fromVariant(const VARIANT& value);

// Arguments by reference, as late-bound callers pass them: a typed reference (VT_BYREF), or a
// reference to a VARIANT (VT_BYREF | VT_VARIANT), which means the VARIANT that it refers to, its
// variable. A variable may be a typed reference itself.

// The variable that a reference to a VARIANT means; for everything else, the argument itself.
VARIANT& variableOf(VARIANT& argument) noexcept;

// Stores the new value of a by-reference argument. A typed reference keeps its type: the value is
// converted, and the former one is released. DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW where it does not
// convert, or the argument is no reference; nothing has changed then. Throws Error 7.
HRESULT assignReference(VARIANT& argument, const automation::Variant& value);

// The value in that type, as the platform converts it; an object converts through its default value.
// DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW where it does not convert. Throws Error 7.
HRESULT convertVariant(const automation::Variant& value, VARTYPE type, ScopedVariant& result);

// True for the types of interface pointers.
bool isInterface(VARTYPE type) noexcept;

// The bytes that a value of that type takes in memory; 0 for types without values of their own, and for arrays.
std::size_t widthOf(VARTYPE type) noexcept;

// The error of a result, with the texts of an exception record, which is emptied (deferred fill-in included); null:
// none.
Error errorOf(HRESULT result, EXCEPINFO* exception);

}  // namespace velmor::platform
