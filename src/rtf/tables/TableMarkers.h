#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Services.h"
#include "rtf/edit/TextEdits.h"

namespace velmor {

// A pair of marker groups brackets each table, so that tables can be found again when they are nested:
// "{\*\korvane\starttable" or "{\*\korvane\endtable", an identifier of 38 characters (a braced GUID, new for
// each table), and "}".
inline constexpr std::u16string_view startTableMarker = u"{\\*\\korvane\\starttable";
inline constexpr std::u16string_view endTableMarker = u"{\\*\\korvane\\endtable";

// Puts a marker pair with a new identifier around each table. Tables, inner ones before outer ones; a table may contain
// another one but not cross it. At one place a table ends before the next one begins.
void insertTableMarkers(const std::vector<TextRange>& tables, platform::Guids& guids, TextEdits& edits);

// Brackets every table of the value, nested ones included, and removes the definitions that are repeated after
// the cells of a row (RemoveExtraTrowd). If anything was inserted, blanks at the value's end are removed. A
// table begins with a row "\trowd", white space or none, "\irow0", or with the cells of that row if they
// precede it. It ends with the row that has "\lastrow", after the blank that ends "\row ". A table without such
// a row is not marked, and neither is any later one. A value with a start marker stays unchanged. True when the
// value changed. Linear in the value; a value without "\trowd" costs one search.
bool addTableMarkers(std::u16string& value, platform::Guids& guids);

// Removes the text between the last "\cell" of a row and its "\row", if it has more than one character, for
// rows whose "\row" is at plTableStart or later and before plTableEnd. Unchanged are rows whose only definition
// is there (it would be lost), rows without a cell of their own, and rows with a table marker there. The
// following text moves left, plTableEnd is lowered by the number of removed characters, and blanks fill the end
// of the value, so that its length stays. Positions are 1-based; a range beyond the value is limited to it. One
// pass.
void RemoveExtraTrowd(std::u16string& value, std::int32_t& plTableStart, std::int32_t& plTableEnd);

}  // namespace velmor
