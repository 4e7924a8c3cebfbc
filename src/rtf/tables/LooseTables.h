#pragma once

#include <string>

#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Brackets tables without markers (their writer names no first or last row, say) where the conversion
// of nested tables needs them: the tables of a document that lies in a table, and nested tables that a
// table with markers has already. Tolerant: the table around such a document may lack markers as well,
// and gets them.
//
// A table is an unbroken run of paragraphs of its level or deeper; it begins with the first of them and
// ends with its last row. A paragraph's level is its \itap number, else 1 with \intbl or in a row, else 0.
// A document, and a table with markers, counts as a piece of the paragraph in which it lies.
//
// Whole tables only: a run without a row gets no markers. One pass, no recursion on the text's depth.
// True when the text changed.
bool MarkLooseTables(std::u16string& psText, const CleanOptions& options, platform::Guids& guids);

}  // namespace velmor::Module1
