#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Keeps table rows on one page: inserts "\trkeep" before each "\row" whose row, from its "\trowd", has none.
// The next row begins after that "\row"; a row without it ends the stage. Tolerant: tables in marker pairs are
// separate from the rows around them. One pass. True when all rows of the text, and all pairs, end in it.
bool ProtectTableRows(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
