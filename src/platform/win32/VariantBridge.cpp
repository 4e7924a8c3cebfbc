#include "platform/win32/VariantBridge.h"

#include "platform/win32/VariantData.h"
#include "text/ErrorSource.h"

namespace velmor::platform {

using automation::Variant;

BSTR makeBstr(std::u16string_view text) {
    const auto* const units = reinterpret_cast<const OLECHAR*>(text.data());
    const BSTR copy = SysAllocStringLen(units, static_cast<UINT>(text.size()));
    if (copy == nullptr) throw Error(7, kErrorSource, u"Out of memory");
    return copy;
}

std::u16string_view viewOf(BSTR text) noexcept {
    return {reinterpret_cast<const char16_t*>(text), SysStringLen(text)};
}

void toVariant(const Variant& value, VARIANT& result) {
    detail::fillVariant(value, result, 0);
}

ScopedVariant toVariant(const Variant& value) {
    ScopedVariant result;
    toVariant(value, *result);
    return result;
}

Variant fromVariant(const VARIANT& value) {
    return detail::copyVariant(value, 0);
}

}  // namespace velmor::platform
