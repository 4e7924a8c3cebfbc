#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_set>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Gives out each free number once, from 1 or after a given one. Memory holds the numbers that are taken otherwise.
class FreshNumbers {
public:
    // False when the number is taken or invalid (it is an optional "-" and digits within 32 bits).
    bool take(std::u16string_view number) {
        const std::optional<std::int32_t> value = wholeNumber(number);
        return value && !isGivenOut(*value) && taken_.insert(*value).second;
    }

    std::int32_t next() {
        while (taken_.contains(++last_)) {
        }
        return last_;
    }

    // Before the first next().
    void beginAfter(std::int32_t number) noexcept { first_ = last_ = number; }

    // Takes a number to which several documents may refer. False when next() has given it out.
    bool reserve(std::u16string_view number) {
        const std::optional<std::int32_t> value = wholeNumber(number);
        if (!value) return true;
        if (isGivenOut(*value)) return false;
        taken_.insert(*value);
        return true;
    }

private:
    bool isGivenOut(std::int32_t number) const {
        return number > first_ && number <= last_ && !taken_.contains(number);
    }

    std::unordered_set<std::int32_t> taken_;
    std::int32_t first_ = 0;  // next() gives out those after it
    std::int32_t last_ = 0;   // up to this one
};

}  // namespace velmor
