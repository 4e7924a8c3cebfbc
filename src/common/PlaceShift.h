#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace velmor {

// From this unit of a text on (0-based), up to the next shift, the text begins at another unit of what it has become.
struct PlaceShift {
    std::size_t from;
    std::size_t to;
};
// In ascending order.
using PlaceShifts = std::vector<PlaceShift>;

// Where a place of the text is in what the text has become; for a part that was removed, where it was. Costs the
// logarithm of the number of shifts.
inline std::size_t shiftedPlace(const PlaceShifts& shifts, std::size_t place) noexcept {
    const auto next = std::upper_bound(shifts.begin(), shifts.end(), place,
                                       [](std::size_t at, const PlaceShift& shift) { return at < shift.from; });
    if (next != shifts.begin()) place = (next - 1)->to + (place - (next - 1)->from);
    return next == shifts.end() ? place : std::min(place, next->to);
}

}  // namespace velmor
