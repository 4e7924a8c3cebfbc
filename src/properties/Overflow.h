#pragma once

#include <cstdint>
#include <limits>

#include "text/Error.h"
#include "text/ErrorSource.h"

namespace velmor {

// 32-bit arithmetic as hosts know it: what does not fit raises number 6.
inline std::int32_t checkedLong(std::int64_t value) {
    if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max()) {
        throw Error(6, kErrorSource, u"Overflow");
    }
    return static_cast<std::int32_t>(value);
}

}  // namespace velmor
