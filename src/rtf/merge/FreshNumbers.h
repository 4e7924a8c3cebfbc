#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_set>

namespace velmor {

// Gives out each free number once, from 1 or after a given one. Memory holds the numbers that are taken otherwise.
class FreshNumbers {
public:
    // False when the number is taken or invalid (it is an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number);

    std::int32_t next();
    // Before the first next().
    void beginAfter(std::int32_t number) noexcept { first_ = last_ = number; }

    // Takes a number to which several documents may refer. False when next() has given it out.
    bool reserve(std::u16string_view number);

private:
    bool isGivenOut(std::int32_t number) const {
        return number > first_ && number <= last_ && !taken_.contains(number);
    }

    std::unordered_set<std::int32_t> taken_;
    std::int32_t first_ = 0;  // next() gives out those after it
    std::int32_t last_ = 0;   // up to this one
};

}  // namespace velmor
