#pragma once

#include <cstdint>
#include <utility>

#include "text/Error.h"

namespace velmor {

// 32-bit arithmetic as hosts know it: what does not fit raises number 6.
inline std::int32_t checkedLong(std::int64_t value) {
    if (!std::in_range<std::int32_t>(value)) throw Error(6);
    return static_cast<std::int32_t>(value);
}

}  // namespace velmor
