#include "platform/win32/Conversions.h"

#include <optional>

#include "automation/PlatformConversions.h"
#include "platform/win32/VariantBridge.h"
#include "platform/win32/WideText.h"

namespace velmor::platform {

namespace {

using automation::Variant;
using automation::VariantType;

// LCID 0 compares texts unit by unit, as scripts do.
constexpr LCID binary = 0;

// The platform reads a text up to its first U+0000; a text with one is neither a number nor a date.
class UserLocaleConversions final : public automation::PlatformConversions {
public:
    std::optional<Variant> convert(const Variant& value, VariantType target) const override {
        const auto* text = value.get<std::u16string>();
        if (text != nullptr && holdsZero(*text)) return std::nullopt;
        ScopedVariant converted = toVariant(value);
        const HRESULT result = VariantChangeTypeEx(converted.get(), converted.get(), LOCALE_USER_DEFAULT,
                                                   VARIANT_ALPHABOOL, static_cast<VARTYPE>(target));
        return SUCCEEDED(result) ? std::optional(fromVariant(*converted)) : std::nullopt;
    }

    std::optional<automation::Date> parseDate(std::u16string_view text, std::uint32_t localeId,
                                              std::uint32_t flags) const override {
        if (holdsZero(text)) return std::nullopt;
        ScopedVariant source = toVariant(Variant(text));
        double days = 0;
        const LCID locale = localeId == 0 ? LOCALE_USER_DEFAULT : localeId;
        if (FAILED(VarDateFromStr(V_BSTR(source.get()), locale, flags, &days))) return std::nullopt;
        return automation::Date{days};
    }

    std::optional<bool> equal(const Variant& left, const Variant& right) const override {
        ScopedVariant first = toVariant(left);
        ScopedVariant second = toVariant(right);
        const HRESULT result = VarCmp(first.get(), second.get(), binary, 0);
        if (FAILED(result)) return std::nullopt;
        return result == static_cast<HRESULT>(VARCMP_EQ);
    }
};

}  // namespace

void installConversions() noexcept {
    static const UserLocaleConversions conversions;
    automation::installPlatformConversions(&conversions);
    installCodePage();
}

}  // namespace velmor::platform
