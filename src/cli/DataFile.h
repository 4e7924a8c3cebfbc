#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "properties/privProperties.h"

namespace velmor::cli {

struct JsonMistake {
    std::size_t index;  // of the byte, from 0
    std::string reason;
};

// Adds the members of the JSON object that `json`, in UTF-8, begins with; what follows the object is not read. A member
// whose name `leavesOut` is left out. Returns the mistake at which it stopped; the members before that were added.
std::optional<JsonMistake> addObject(privProperties& into, std::string_view json,
                                     const std::function<bool(std::u16string_view name)>& leavesOut = {});

// A long if it fits, else a double if that is exact, else a decimal.
automation::Variant wholeNumber(std::int64_t number);

// From the bytes of a data file, whose name is for messages. Adds the members of a JSON object, or of the first object
// of a JSON array, as properties. They replace properties of the same names. Objects and arrays within it become child
// properties; those of an array are named 1, 2 and so on. Throws Failure (exitFile), with line and column of the place,
// when the file has another form or nests deeper than 100 levels.
void addData(privProperties& into, std::string_view bytes, const std::string& name);

}  // namespace velmor::cli
