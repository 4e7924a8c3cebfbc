#pragma once

#include <string>
#include <string_view>

#include "common/PlaceShift.h"

namespace velmor {

// Evaluation can leave a mark in place of each tag whose result is empty. What shows nothing but such tags is empty,
// too: blanks, tabs and line breaks count as nothing; pictures, fields, breaks, bookmarks and comments do not.
inline constexpr char16_t emptyTag = u'\uFDD1';

// Whether a text without ends of cells, rows and sections shows nothing. Costs the distance to what it shows.
bool showsNothing(std::u16string_view text, bool isRtf) noexcept;

// Removes each empty paragraph with at least one mark, of plain text each such line with its end, then all marks.
//
// Of an RTF paragraph its blanks, the number that its list gives it and its \par go. Its other words and its braces
// stay, so paragraphs that follow keep their formatting. A paragraph without a \par of its own stays: the last one of a
// cell, a header or a document; so does the only one between two tables, and one between a table and the end.
// Linear. `shifts` receives where the parts that stay are.
void dropEmptyParagraphs(std::u16string& text, bool isRtf, PlaceShifts* shifts = nullptr);

void removeEmptyTags(std::u16string& text) noexcept;

}  // namespace velmor
