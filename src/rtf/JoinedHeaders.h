#pragma once

#include <string>

#include "rtf/CleanOptions.h"
#include "rtf/TableCollection.h"

namespace velmor::Module1 {

// Tolerant merge mode: a joined document without a header (or footer) group would show that of the
// document in front of it, since a section inherits what it does not give. It gets empty ones, behind
// its merge page break in psText. What a document has stays. One pass over psText, which is the host's
// text with placeholders; nothing happens in other modes.
void SeparateJoinedHeaders(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace velmor::Module1
