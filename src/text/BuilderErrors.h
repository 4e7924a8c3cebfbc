#pragma once

#include <cstdint>
#include <new>
#include <utility>

#include "text/Compare.h"
#include "text/Error.h"

namespace velmor {

// What privStrCat's members share: the errors that they raise, and the checked arithmetic of positions.

[[noreturn]] inline void raiseBuilderError(std::int32_t number, const char16_t* description) {
    throw Error(number, u"VelmorStrCat", description);
}

inline void requireArgument(bool valid) {
    if (!valid) raiseBuilderError(5, u"Invalid procedure call or argument");
}

inline std::int32_t checked(std::int64_t value) {
    if (!std::in_range<std::int32_t>(value)) raiseBuilderError(6, u"Overflow");
    return static_cast<std::int32_t>(value);
}

inline std::int32_t sum(std::int32_t a, std::int32_t b) {
    return checked(std::int64_t{a} + b);
}
inline std::int32_t difference(std::int32_t a, std::int32_t b) {
    return checked(std::int64_t{a} - b);
}

// Of values known not to be negative, and positions known not to be below 1.
inline std::size_t toSize(std::int32_t value) noexcept {
    return static_cast<std::size_t>(value);
}
inline std::size_t toIndex(std::int32_t position) noexcept {
    return static_cast<std::size_t>(position) - 1;
}

constexpr Comparison comparisonOf(bool binary) noexcept {
    return binary ? Comparison::binary : Comparison::text;
}

template <typename Step>
auto reportingErrors(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        raiseBuilderError(7, u"Out of memory");
    }
}

}  // namespace velmor
