#pragma once

#include <string_view>

#include "automation/Variant.h"

namespace velmor {

// The value that an unquoted text stands for. A type character at the end asks for a type: "&"
// long, "%" integer, "!" single ("!" on both sides: decimal), "#" double, "$" currency; with "&"
// and "%", a number with a "." is a double. True and False (exact case) are booleans. Without a
// type character a number with a "." is a double, one below 2147483647 (and not below
// -2147483648) a long. Everything else is a text, spelled as it stands: what is no number, and a
// number that its type cannot hold.
automation::Variant typedValue(std::u16string_view text);

}  // namespace velmor
