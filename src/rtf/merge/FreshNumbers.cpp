#include "rtf/merge/FreshNumbers.h"

#include <optional>

#include "rtf/read/RtfReader.h"

namespace velmor {

bool FreshNumbers::take(std::u16string_view number) {
    const std::optional<std::int32_t> value = wholeNumber(number);
    return value && taken_.emplace(*value, false).second;
}

std::int32_t FreshNumbers::next() {
    while (!taken_.emplace(++last_, true).second) {
    }
    return last_;
}

bool FreshNumbers::reserve(std::u16string_view number) {
    const std::optional<std::int32_t> value = wholeNumber(number);
    return !value || !taken_.emplace(*value, false).first->second;
}

}  // namespace velmor
