#include "rtf/merge/FreshNumbers.h"

#include <optional>

#include "rtf/read/RtfReader.h"

namespace velmor {

bool FreshNumbers::take(std::u16string_view number) {
    const std::optional<std::int32_t> value = wholeNumber(number);
    return value && !isGivenOut(*value) && taken_.insert(*value).second;
}

std::int32_t FreshNumbers::next() {
    while (taken_.contains(++last_)) {
    }
    return last_;
}

bool FreshNumbers::reserve(std::u16string_view number) {
    const std::optional<std::int32_t> value = wholeNumber(number);
    if (!value) return true;
    if (isGivenOut(*value)) return false;
    taken_.insert(*value);
    return true;
}

}  // namespace velmor
