#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Rewrites the tables of marker pairs that lie in other marker pairs as nested tables. Only what
// stands between markers changes; the markers stay. What follows is said of a pair's own text, that
// is, without the pairs in it and without footnotes, headers, footers and text boxes.
//
// Level: 1 for a pair that lies in no other, one more for each pair around it, at most 9.
// Every pair:
//   \intbl gets "\itap" and the level behind it, unless "\itap" stands there;
//   \itap has its number's first digit (tolerant: the number) overwritten with the level; without a
//   number the level takes the place of the white space behind it, or is inserted, with "\intbl" in
//   front where it is missing;
//   \par and \pard behind the last \intbl (and the last inner pair) get "\intbl\itap" and the level,
//   and so does a \pard before it whose paragraph has no \intbl. Such a paragraph between two rows
//   belongs to the level around the table.
// Deeper than level 1:
//   \cell becomes \nestcell, and \row the end of a group "{\*\nesttableprops" that takes in the row's
//   definition, in a paragraph of its own. The definition may stand before or behind the cells. A row
//   without one repeats that of the row before; one that is in such a group already is left there.
//   Cells without a column, which readers would drop, get one.
//   Text in front of the pair is closed with \par, and so is the place between two pairs; behind the
//   pair, the paragraph around it is set up again, unless a \pard follows.
// \cellx never changes.
//
// Tolerant, the data of \bin is passed over. A start marker without its end marker ends the conversion in the pair
// around it; tolerant, it is passed over. Linear in the text; no recursion on its depth. Raises what TextEdits::apply
// does; the text is then as it was.
void ConvertNestedTables(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
