#pragma once

#include <string>
#include <string_view>

#include "properties/privProperties.h"

namespace velmor::cli {

// From the bytes of a data file, whose name is for messages. Adds the members of a JSON object, or of the first object
// of a JSON array, as properties. They replace properties of the same names. Objects and arrays within it become child
// properties; those of an array are named 1, 2 and so on. Throws Failure (exitFile), with line and column of the place,
// when the file has another form or nests deeper than 100 levels.
void addData(privProperties& into, std::string_view bytes, const std::string& name);

}  // namespace velmor::cli
