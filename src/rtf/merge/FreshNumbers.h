#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace velmor {

// Hands out the numbers from 1 on that are not taken, each once.
class FreshNumbers {
public:
    // False when the number is taken already, or is none (an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number);

    std::int32_t next();

    // Takes a number that documents may refer to in common. False when next() has handed it out.
    bool reserve(std::u16string_view number);

private:
    std::unordered_map<std::int32_t, bool> taken_;  // whether next() handed it out
    std::int32_t last_ = 0;
};

}  // namespace velmor
