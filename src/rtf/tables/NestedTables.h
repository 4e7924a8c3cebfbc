#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Rewrites the tables of marker pairs within other marker pairs as nested tables. Only text between markers
// changes; the markers stay. The rules below hold for a pair's own text, without the pairs in it and without
// footnotes, headers, footers and text boxes.
//
// Level: 1 for an outermost pair, one more for each pair around it, at most 9. Every pair:
//   "\itap" and the level follow \intbl, unless "\itap" does already;
//   in \itap the level replaces the number's first digit (tolerant: the number); without a
//   number the level replaces the white space after it, or is inserted, with "\intbl" before
//   it where that is absent;
//   \par and \pard after the last \intbl (and the last inner pair) get "\intbl\itap" and the level,
//   and so does a \pard before it whose paragraph has no \intbl. Such a paragraph between two rows
//   belongs to the level around the table.
// Deeper than level 1:
//   \cell becomes \nestcell, and \row the end of a group "{\*\nesttableprops" that takes in the row's
//   definition, in a paragraph of its own. The definition may precede or follow the cells. A row
//   without one repeats that of the previous row; one that is already in such a group stays there.
//   Cells without a column, which readers would drop, get one.
//   \par ends text before the pair, and separates two pairs; after the
//   pair the paragraph around it is set up again, unless a \pard follows.
// \cellx never changes.
//
// A start marker without its end marker ends the conversion in the pair around it. Tolerant conversion skips
// it, and the data of \bin. Linear in the text; no recursion on its depth. Raises the errors of
// TextEdits::apply; the text is then unchanged.
void ConvertNestedTables(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
