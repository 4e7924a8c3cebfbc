#pragma once

#include <string>

#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Brackets tables without markers (because their rows lack \irow0 or \lastrow, for example) where the
// conversion of nested tables needs markers: the tables of a document in a table, and the nested tables of a
// table with markers. Tolerant: the table around such a document gets markers too.
//
// A table is an unbroken run of paragraphs of its level or deeper; it begins with the first of them and ends
// with its last row. A paragraph's level is its \itap number, else 1 with \intbl or in a row, else 0. A
// document, and a table with markers, is a part of the paragraph around it.
//
// Whole tables only: a run without a row gets no markers. One pass, no recursion on the text's depth.
// True when the text changed.
bool MarkLooseTables(std::u16string& psText, const CleanOptions& options, platform::Guids& guids);

}  // namespace velmor::Module1
