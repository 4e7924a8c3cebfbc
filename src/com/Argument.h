#pragma once

#include "com/InterfaceTable.h"
#include "platform/win32/ScopedVariant.h"
#include "platform/win32/Windows.h"

namespace velmor::com {

// One argument of a late-bound call on its way to a vtable member: brought to the declared type
// before the call and, where it is declared by reference, written back after it.
//
// A value or a typed reference of the declared type is passed on as it is, without a copy. What a
// by-reference Variant holds, which is what scripts pass, is copied or converted, and the Variant
// takes the new value only when the member changed it: a number passed where a text is declared
// stays a number otherwise.
class Argument {
public:
    // The source is null for an argument that was left out; it must outlive the call.
    // DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW or DISP_E_PARAMNOTOPTIONAL when it does not fit.
    HRESULT take(const Parameter& parameter, VARIANTARG* source, LCID locale) noexcept;
    // After the call.
    HRESULT writeBack(LCID locale) noexcept;

    // What DispCallFunc gets.
    VARTYPE passedType() const noexcept;
    VARIANTARG* passed() noexcept { return &passed_; }

private:
    HRESULT takeValue(const Parameter& parameter, VARIANTARG& source, LCID locale) noexcept;
    HRESULT takeReference(const Parameter& parameter, VARIANTARG& source, LCID locale) noexcept;
    HRESULT takeInitial(const Parameter& parameter) noexcept;
    HRESULT convert(const Parameter& parameter, const VARIANT& source, LCID locale) noexcept;
    void passOwn(const Parameter& parameter) noexcept;

    VARIANTARG passed_{};           // borrows from the source or from own_
    platform::ScopedVariant own_;   // the converted value
    platform::ScopedVariant sent_;  // a copy of it as it was before the call
    VARIANTARG* target_ = nullptr;  // the caller's variable that own_ goes back to
};

}  // namespace velmor::com
