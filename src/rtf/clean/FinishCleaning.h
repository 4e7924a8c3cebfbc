#pragma once

#include <exception>
#include <string>

#include "platform/Services.h"
#include "rtf/edit/CleanOptions.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/GroupSet.h"

namespace velmor {

// Runs a step of cleaning; false when it failed. What it changed before stays.
template <typename Step>
bool attempt(Step step) noexcept {
    try {
        step();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

// What a part of a joined text needs to know of the other parts; it goes from one part to the next.
struct PartOfText {
    JoinedPart pages;
    std::u16string generator;  // the last generator group
    bool endsInRow = false;    // the next part begins in a table row of this one

    bool operator==(const PartOfText&) const = default;
};

// Steps 4 to 9 of docs/cleaning.md, for a text whose documents and merged tables are in their places. `groups` are
// those of all its documents, `hasDocuments` says whether there are others than the host. A step whose groups do not
// occur costs nothing.
void finishCleaning(std::u16string& text, const CleanOptions& options, platform::Guids& guids, GroupSet groups,
                    bool hasDocuments, PartOfText& part);

}  // namespace velmor
