#include "rtf/read/WholeNumber.h"

#include <limits>

#include "rtf/read/ControlWord.h"

namespace velmor {

std::optional<std::int32_t> wholeNumber(std::u16string_view text) noexcept {
    const bool negative = text.starts_with(u'-');
    if (negative) text.remove_prefix(1);
    if (text.empty()) return std::nullopt;
    const std::int64_t limit = std::numeric_limits<std::int32_t>::max() + std::int64_t{negative};
    std::int64_t value = 0;
    for (const char16_t digit : text) {
        if (!isDecimalDigit(digit)) return std::nullopt;
        value = value * 10 + (digit - u'0');
        if (value > limit) return std::nullopt;
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

}  // namespace velmor
