#pragma once

#include <cstddef>
#include <vector>

#include "properties/KeyedItems.h"

namespace velmor {

// The order of privProperties::Sort, as the present 0-based positions. It is that of an insertion one
// by one: before the first property placed that sorts after the new one, else at the end. O(n log n).
std::vector<std::size_t> sortedOrder(KeyedItems& items);

}  // namespace velmor
