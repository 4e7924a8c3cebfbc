#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/Variant.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"
#include "text/Error.h"

namespace velmor::platform {

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

// By-reference values are followed. Types that have no counterpart are widened without loss:
// signed bytes to Integer, 16-bit unsigned to Long, larger ones to Long where they fit, else to
// Decimal. Objects come in by objectOf, also those that come as an IUnknown; one that is no IDispatch
// is a data object.
// Throws Error 13 for a type that is no variant type, 7 without memory.
automation::Variant fromVariant(const VARIANT& value);

// Errors. Numbers 1 to 65535 are HRESULTs of the control facility (0x800A....), others are taken as
// they are; the platform's own failures come in as the numbers that scripts know them by.
HRESULT hresultOf(const Error& error) noexcept;
std::int32_t errorNumberOf(HRESULT result) noexcept;
// With the texts of an exception record, which is emptied (deferred fill-in included); null: none.
Error errorOf(HRESULT result, EXCEPINFO* exception);

}  // namespace velmor::platform
