#include "common/PlaceShift.h"

#include <algorithm>

namespace velmor {

std::size_t shiftedPlace(const PlaceShifts& shifts, std::size_t place) noexcept {
    const auto next = std::upper_bound(shifts.begin(), shifts.end(), place,
                                       [](std::size_t at, const PlaceShift& shift) { return at < shift.from; });
    if (next != shifts.begin()) place = (next - 1)->to + (place - (next - 1)->from);
    return next == shifts.end() ? place : std::min(place, next->to);
}

}  // namespace velmor
