#pragma once

#include <vector>

#include "properties/privProperty.h"

namespace velmor {

// The properties in the order of privProperties::Sort, which is that of an insertion one by one:
// before the first one placed that sorts after the new one, else at the end. O(n log n).
std::vector<PropertyRef> sortedProperties(std::vector<PropertyRef> properties);

}  // namespace velmor
