#pragma once

#include <string>

#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// Adds the members of a JSON object, or of the first object of a JSON array, as properties. They replace properties of
// the same names. Objects and arrays within it become child properties; those of an array are named 1, 2 and so on.
// Throws Failure (exitFile), with line and column of the place, when the file has another form or nests deeper than 100
// levels.
void readDataFile(privProperties& into, const platform::Files& files, const std::string& name);

}  // namespace velmor::cli
