#pragma once

namespace velmor {

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
};

}  // namespace velmor
