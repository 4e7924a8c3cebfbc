#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace velmor {

// Gives out each free number from 1 once.
class FreshNumbers {
public:
    // False when the number is taken or invalid (it is an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number);

    std::int32_t next();

    // Takes a number to which several documents may refer. False when next() has given it out.
    bool reserve(std::u16string_view number);

private:
    std::unordered_map<std::int32_t, bool> taken_;  // whether next() gave it out
    std::int32_t last_ = 0;
};

}  // namespace velmor
