#pragma once

namespace velmor {

// How one run of cleaning behaves. One value for all stages: a stage asks it, none exists twice.
struct CleanOptions {
    // The text is several documents joined with merge page breaks: each keeps its headers, footers
    // and page.
    bool mergeMode = false;

    // Prefers what a reader of RTF would see over the plain rules wherever the two differ: braces
    // behind "\\" count, \bin data is passed over, tables of fonts and colours are read to their end,
    // a lifted document's character set and formatting stay its own.
    bool tolerant = false;

    // Rows without \trkeep get one, so that none is split across pages.
    bool overrunProtection = true;
};

}  // namespace velmor
