#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/PropertyCheck.h"

namespace velmor {

// JSON about the properties that a template reads. A default that is empty or holds a tag counts as none. JSON has no
// lone surrogates: one becomes U+FFFD. Ends with a line feed. Linear.

// A JSON Schema (2020-12) of the data that the template takes. A property without a default is required unless the
// template itself sets it. An empty title is left out.
std::u16string schemaText(const std::vector<PropertyUse>& uses, std::u16string_view title);

// An object of sample data: each property that the template does not set itself, with its default, or with its name
// where it has none.
std::u16string sampleText(const std::vector<PropertyUse>& uses);

}  // namespace velmor
