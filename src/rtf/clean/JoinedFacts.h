#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "rtf/merge/MergeTables.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// What cleaning the parts of a joined text needs to know of its documents.
class JoinedFacts {
public:
    JoinedFacts() = default;  // of no document
    // Of the first document, with the text around it. Linear.
    static JoinedFacts ofHost(std::u16string_view text, TextRange document, bool tolerant);
    // Of a further document. Linear.
    static JoinedFacts of(std::u16string_view document, bool tolerant);
    // Those of documents that follow. The obstacle of the first one stays.
    void add(const JoinedFacts& other);

    // Whether cleaning applies to the joined text.
    bool isCleanable() const noexcept { return isVersionOne_ && !holdsTag_; }
    // Why the documents cannot be cleaned in parts, as the rest of a sentence about the last one; empty if they can.
    std::u16string_view obstacle() const noexcept { return obstacle_; }

    const LiftedDocuments& lifted() const noexcept { return lifted_; }
    bool hasFacingPages() const noexcept { return facing_; }
    bool hasHeaders() const noexcept { return groups_.has(Group::header) || groups_.has(Group::footer); }
    // A mark for a TableCollection of the joined text.
    std::optional<char16_t> unusedMark() const { return TableCollection::unusedMark(highUnits_); }

private:
    void noteText(std::u16string_view text, bool tolerant);
    void noteUnits(std::u16string_view text);

    bool isVersionOne_ = false;
    bool holdsTag_ = false;
    bool facing_ = false;
    GroupSet groups_;
    LiftedDocuments lifted_;
    std::u16string_view obstacle_;
    std::u16string highUnits_;  // those that may not be a mark, each once
};

}  // namespace velmor
