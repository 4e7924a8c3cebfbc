#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "automation/Variant.h"

namespace velmor::automation {

// The conversions of Convert.h as the machine's own automation library does them. What installs
// one (platform/win32 at start) keeps it alive for good; where none is installed the portable form
// is used. Values handed over are plain: no objects, no arrays, no data objects, no records.
class PlatformConversions {
public:
    virtual ~PlatformConversions() = default;

    // In the user's locale. Nothing: does not convert. The result is of the target type.
    virtual std::optional<Variant> convert(const Variant& value, VariantType target) const = 0;
    // Locale 0 is the user's.
    virtual std::optional<Date> parseDate(std::u16string_view text, std::uint32_t localeId,
                                          std::uint32_t flags) const = 0;
    // Texts unit by unit. Nothing where the platform raises; Null equals nothing.
    virtual std::optional<bool> equal(const Variant& left, const Variant& right) const = 0;
};

// Null: back to the portable form. Not safe while other threads convert.
void installPlatformConversions(const PlatformConversions* conversions) noexcept;
const PlatformConversions* platformConversions() noexcept;

}  // namespace velmor::automation
