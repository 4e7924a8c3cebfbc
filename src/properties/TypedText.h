#pragma once

#include <optional>
#include <string_view>

#include "automation/Variant.h"

namespace velmor {

// The value of an unquoted text, the same on every machine.
//
// A type character at the end sets the type: "&" long, "%" integer, "!" single ("!" on both sides: decimal),
// "#" double, "$" currency; with "&" and "%", a number with a decimal sign is a double. One "." or one "," is
// the decimal sign; any other text is then read as this machine writes numbers. Without a type character, a
// number with a "." is a double, and one below 2147483647 (and not below -2147483648) a long; a "," alone is no
// decimal sign there. NUL is Null, True and False are booleans (exact case). Every other text stays a text with
// its spelling, such as a number that its type cannot hold.
automation::Variant typedValue(std::u16string_view text);

// True for booleans, Null and most whole numbers in the form that is written for them. Asks for no conversion, so it
// is False for some texts that are in that form, too.
bool isWrittenForm(std::u16string_view text) noexcept;

// The date between two "#". The written form, "5 Mar 2004 2:07:09 PM" in any case, is read alike on
// every machine; any other text if this machine takes it for a date. Nothing for more than 64
// characters, so a search for the second "#" may try each candidate.
std::optional<automation::Date> dateOfText(std::u16string_view text);

}  // namespace velmor
