#pragma once

#include <cstdint>
#include <string_view>

#include "text/Compare.h"

namespace velmor {

struct MergeReport;

// What becomes of the text in a style of a lifted document whose name another definition has already.
enum class StyleConflict : std::uint8_t {
    rename,  // it keeps the style, under another name
    host,    // it looks as the definition says that came first
    keep     // it has the style that came first, and looks by direct formatting as its own one says
};

// "host" and "keep", without regard to case; any other text means rename.
inline StyleConflict styleConflictOf(std::u16string_view name) noexcept {
    if (equalIgnoringCase(name, u"host")) return StyleConflict::host;
    return equalIgnoringCase(name, u"keep") ? StyleConflict::keep : StyleConflict::rename;
}

// The options of one run of cleaning, for all stages.
struct CleanOptions {
    // The text consists of documents joined with merge page breaks; each keeps its headers, footers and page.
    bool mergeMode = false;

    // Prefers what a reader of RTF shows to the plain rules: braces after "\\" count, \bin data is skipped,
    // tables of fonts and colours are read to their end, a lifted document keeps its character set and
    // formatting.
    bool tolerant = false;

    // Rows without \trkeep get one, so that none is split across pages.
    bool overrunProtection = true;

    StyleConflict styles = StyleConflict::rename;

    // Receives what merging did; null when nobody asks.
    MergeReport* report = nullptr;
};

}  // namespace velmor
