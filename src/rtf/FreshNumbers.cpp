#include "rtf/FreshNumbers.h"

#include <limits>
#include <optional>

namespace velmor {
namespace {

std::optional<std::int32_t> parse(std::u16string_view digits) {
    const bool negative = digits.substr(0, 1) == u"-";
    if (negative) digits.remove_prefix(1);
    if (digits.empty() || digits.size() > 10) return std::nullopt;
    std::int64_t value = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9') return std::nullopt;
        value = value * 10 + (digit - u'0');
    }
    if (negative) value = -value;
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace

bool FreshNumbers::take(std::u16string_view number) {
    const std::optional<std::int32_t> value = parse(number);
    return value && taken_.emplace(*value, false).second;
}

std::int32_t FreshNumbers::next() {
    while (!taken_.emplace(++last_, true).second) {
    }
    return last_;
}

bool FreshNumbers::reserve(std::u16string_view number) {
    const std::optional<std::int32_t> value = parse(number);
    return !value || !taken_.emplace(*value, false).first->second;
}

}  // namespace velmor
