#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor::Module1 {

// Merges the font, colour, list and style tables of the host and of every lifted document, in this order, into
// shared ones: each document loses its tables, the host receives their placeholders, and every reference is
// renumbered. Linear in the documents. Raises only when memory runs out.
void MergeDocumentTables(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace velmor::Module1
