#pragma once

#include <string_view>

#include "automation/Variant.h"

namespace velmor {

// The value of an unquoted text, the same on every machine.
//
// A type character at the end asks for a type: "&" long, "%" integer, "!" single ("!" on both
// sides: decimal), "#" double, "$" currency; with "&" and "%", a number with a decimal sign is a
// double. One "." or one "," is the decimal sign; only what is no number then is read as this
// machine writes numbers. Without a type character, a number with a "." is a double, and one below
// 2147483647 (and not below -2147483648) a long; "," alone is no decimal sign there. True and False
// (exact case) are booleans. Everything else is a text, spelled as it is: what is no number, and a
// number that its type cannot hold.
automation::Variant typedValue(std::u16string_view text);

}  // namespace velmor
