#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The colours of all documents of a run, by definition ("\red255\green0\blue0;"), in order of first appearance,
// numbered from 1: number 0 is the automatic colour. A document's table is read up to the first line break or
// blank after a ";"; tolerant merging reads it to its end, and takes the names of theme colours from the definitions
// of documents other than the host: the theme that stays is the host's.
class ColourTable {
public:
    explicit ColourTable(const CleanOptions& options) noexcept : tolerant_(options.tolerant), report_(options.report) {}

    // "{\colortbl", in exactly these letters, to the next "}".
    static std::optional<TextRange> find(std::u16string_view text, bool tolerant) noexcept;

    // Adds the colours of a document's table; `numbers` receives the new number of each.
    void add(std::u16string_view table, NumberMap& numbers, bool host);

    // The merged table; one of five colours when none was added.
    std::u16string text() const;

private:
    std::int32_t numberOf(std::u16string_view definition, bool host);

    bool tolerant_;
    MergeReport* report_;
    NameIndex numbers_;
    std::u16string definitions_;
};

}  // namespace velmor
