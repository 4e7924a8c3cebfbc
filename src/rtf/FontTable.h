#pragma once

#include <string>

#include "rtf/CleanOptions.h"
#include "rtf/TableCollection.h"

namespace velmor {

// The fonts of all documents of a run, by name.
class FontTable {
public:
    explicit FontTable(const CleanOptions& options) noexcept : options_(options) {}

    // Takes a document's font table out, adds its fonts, and renumbers the document's references.
    // For the host the shared table's placeholder stands in its place, or behind the document's
    // opening word. `groups` tells what the document may hold.
    void MergeFontTable(std::u16string& psText, GroupSet groups, TableCollection& poTables, bool pbHost);

    // Once, behind all documents.
    void store(TableCollection& poTables) const;

private:
    CleanOptions options_;
};

}  // namespace velmor
