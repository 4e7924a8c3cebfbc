#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Services.h"

namespace velmor {

// Tables are bracketed with a pair of marker groups of our own, so that tables which come to lie in
// one another can be found again: "{\*\korvane\starttable" or "{\*\korvane\endtable", an identity of
// 38 characters (a braced GUID, new for each table), and "}".
inline constexpr std::u16string_view startTableMarker = u"{\\*\\korvane\\starttable";
inline constexpr std::u16string_view endTableMarker = u"{\\*\\korvane\\endtable";
inline constexpr std::int32_t startTableMarkerLength = 61;
inline constexpr std::int32_t endTableMarkerLength = 59;

// Brackets every table of the value, nested ones included, and drops the definitions that repeat
// behind the cells of a row (RemoveExtraTrowd); when anything was inserted, blanks at the value's
// end are cut. A table begins with a row "\trowd", white space or none, "\irow0", or with the cells
// of that row when they stand before it, and ends with the row that has "\lastrow", behind the blank
// that ends "\row ". One without such a row is not marked, and neither is what follows it.
// Does nothing to a value that already has a start marker. True when the value changed.
// Linear in the value; a value without "\trowd" costs one search, and no memory.
bool addTableMarkers(std::u16string& value, platform::Guids& guids);

// Removes what stands between the last "\cell" of a row and its "\row", when that is more than one
// character, for the rows whose "\row" lies from plTableStart up to, and not including, plTableEnd.
// Left alone are rows whose only definition stands there (it would be lost), rows without a cell of
// their own, and rows with a table marker there. What follows moves left, plTableEnd falls by the
// number of characters removed, and the freed end of the value is filled with blanks: its length
// stays, and the caller trims it once. Positions are 1-based; a range that reaches out of the value
// is cut to it. One pass.
void RemoveExtraTrowd(std::u16string& value, std::int32_t& plTableStart, std::int32_t& plTableEnd);

}  // namespace velmor
