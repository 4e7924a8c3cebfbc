#pragma once

#include <string>

#include "rtf/CleanOptions.h"
#include "rtf/TableCollection.h"

namespace velmor {

// The colours of all documents of a run, by definition.
class ColourTable {
public:
    explicit ColourTable(const CleanOptions& options) noexcept : options_(options) {}

    // As FontTable::MergeFontTable.
    void MergeColourTable(std::u16string& psText, GroupSet groups, TableCollection& poTables, bool pbHost);

    // Once, behind all documents. A table of five colours when none was collected.
    void store(TableCollection& poTables) const;

private:
    CleanOptions options_;
};

}  // namespace velmor
