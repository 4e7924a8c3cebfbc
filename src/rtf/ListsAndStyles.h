#pragma once

#include <string>

#include "rtf/CleanOptions.h"
#include "rtf/TableCollection.h"

namespace velmor {

// The list tables, list overrides and style sheets of all documents of a run.
class ListsAndStyles {
public:
    explicit ListsAndStyles(const CleanOptions& options) noexcept : options_(options) {}

    // Takes a document's tables out, adds what they hold, and renumbers the document's references.
    void MergeListsAndStyles(std::u16string& psText, GroupSet groups, TableCollection& poTables, bool pbHost);

    // Once, behind all documents: stores what was collected, and puts placeholders into the host's
    // text for it.
    void store(std::u16string& psText, TableCollection& poTables);

private:
    CleanOptions options_;
};

}  // namespace velmor
