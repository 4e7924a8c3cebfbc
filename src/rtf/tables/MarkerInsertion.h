#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/Services.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// Collects the tables to bracket and the ranges to remove, by their places in the unchanged text; then makes
// the new text in one pass.
class MarkerInsertion {
public:
    // Tables, inner ones before outer ones. A table may contain another one but not cross it.
    std::vector<TextRange> tables;
    // Ascending and separate; no edge of a table is within a range.
    std::vector<TextRange> cuts;

    bool empty() const noexcept { return tables.empty(); }

    // Puts a marker pair with a new identifier around each table, and removes the cuts.
    void apply(std::u16string& text, platform::Guids& guids) const;
};

}  // namespace velmor
