#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace velmor {

// Gives out each free number once, from 1 or after a given one.
class FreshNumbers {
public:
    // False when the number is taken or invalid (it is an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number);

    std::int32_t next();
    void beginAfter(std::int32_t number) noexcept { last_ = number; }

    // Takes a number to which several documents may refer. False when next() has given it out.
    bool reserve(std::u16string_view number);

private:
    std::unordered_map<std::int32_t, bool> taken_;  // whether next() gave it out
    std::int32_t last_ = 0;
};

}  // namespace velmor
