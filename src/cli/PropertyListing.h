#pragma once

#include <string>

#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// Lists a collection in UTF-8, with attributes, child properties and nested collections.
struct PropertyListing {
    std::string text;
    bool complete = true;  // false: levels deeper than 100 were left out
};

// A table of names, types and values, a line each. Attributes are marked "@" and child properties
// "+". Texts are shown as by onOneLine; long ones are shortened.
PropertyListing propertyTable(platform::Services& services, const privProperties& collection);

// JSON, one line for each property of the collection. A lone surrogate becomes U+FFFD.
PropertyListing propertyJson(platform::Services& services, const privProperties& collection);

}  // namespace velmor::cli
