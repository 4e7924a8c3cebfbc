#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "automation/Variant.h"

namespace velmor {

// Dates as the text form has them: "5 Mar 2004 2:07:09 PM". English month names and a 12-hour
// clock wherever the program runs, so that a text can be read elsewhere.

// To whole seconds. Nothing when the date lies outside the years 100 to 9999.
std::optional<std::u16string> dateText(automation::Date date);

// Reads that form, letters in any case; whatever else the platform takes for a date as well.
// Texts of more than 64 characters are no dates, so a search for an end may try each candidate.
std::optional<automation::Date> dateFromText(std::u16string_view text);

}  // namespace velmor
