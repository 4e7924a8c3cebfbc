#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_set>

namespace velmor {

// Hands out the numbers from 1 on that are not taken, each once.
class FreshNumbers {
public:
    // False when the number is taken already, or is none (an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number);

    std::int32_t next();

private:
    std::unordered_set<std::int32_t> taken_;
    std::int32_t last_ = 0;
};

}  // namespace velmor
