#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// Collects, by the places of the text as it is, the tables to bracket and the ranges to cut; then
// makes the new text in one pass.
class MarkerInsertion {
public:
    // Tables, inner ones before those that they lie in. A table may contain, but never cross,
    // another one.
    std::vector<TextRange> tables;
    // Ascending, apart from one another, without the edge of a table in them.
    std::vector<TextRange> cuts;

    bool empty() const noexcept { return tables.empty(); }

    // Puts a marker pair, of a new identity, around each table, and takes the cuts out.
    void apply(std::u16string& text, platform::Guids& guids) const;
};

}  // namespace velmor
