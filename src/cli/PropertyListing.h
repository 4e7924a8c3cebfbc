#pragma once

#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// Print a collection in UTF-8, with attributes, child properties and nested collections. False when
// levels deeper than 100 were left out.

// A table of names, types and values, a line each. Attributes are marked "@" and child properties
// "+". Texts are shown as by onOneLine; long ones are shortened.
bool printPropertyTable(platform::Services& services, const privProperties& collection);

// JSON, one line for each property of the collection. A lone surrogate becomes U+FFFD.
bool printPropertyJson(platform::Services& services, const privProperties& collection);

}  // namespace velmor::cli
