#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Services.h"
#include "rtf/clean/FinishCleaning.h"
#include "rtf/clean/JoinedFacts.h"
#include "rtf/clean/SpooledTexts.h"
#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/MergeTables.h"

namespace velmor {

// How much of a joined text is in memory, and how many threads clean it.
struct JoinLimits {
    std::size_t part = std::size_t{1} << 20;    // units after which a part ends
    std::size_t atOnce = std::size_t{1} << 25;  // units that are cleaned at once
    bool twoThreads = false;                    // a part is cleaned while the next one is merged
};

// Cleans joined documents in parts: a few documents at a time, which are merged one after the other. A part is a text
// of its own, with a host that says what the stages need of the first document. It ends with the page break before an
// empty document, since a document is finished at the page break after it. A part begins and ends in the middle of such
// a break, at its \sect.
//
// The first part holds the first document, and so the merged tables. It is cleaned when all documents are merged; and
// once before, for what the other parts need to know. So it is a small one if there are others. Each other part may be
// cleaned on a second thread, while the documents after it are merged.
class JoinedParts {
public:
    // `facts` are those of all documents; they have no obstacle. `host` is the first document, with the marker of a
    // page break before its last brace, `size` that of the joined text. With two threads, both ask for GUIDs.
    JoinedParts(const CleanOptions& options, platform::Guids& guids, const JoinedFacts& facts, char16_t mark,
                std::u16string host, SpooledTexts cleaned, const JoinLimits& limits, std::size_t size);

    // Each further document. False when cleaning in parts is not possible.
    bool add(std::u16string document);
    // After the last document. False, and nothing was written, when cleaning in parts is not possible.
    bool finish(const std::function<void(std::u16string_view)>& write);

private:
    struct Part {
        std::u16string documents;  // each after its marker
        GroupSet groups;
    };

    bool endPart();
    bool beginCleaning(std::u16string_view end);
    bool endCleaning();
    bool cleanNextPart(const std::u16string& host, const Part& part, std::u16string_view end);
    bool cleanFirstPart(std::u16string_view end, std::u16string& text, PartOfText& state) const;
    bool clean(std::u16string& text, std::size_t host, GroupSet groups, PartOfText& state) const;
    std::size_t endOf(std::u16string_view text) const noexcept;
    std::u16string withTables(std::u16string text) const;
    std::u16string hostOfPart() const;
    bool namesLaterFont(std::u16string_view document) const;
    void bracketTables(std::u16string& text);
    PartOfText beginning() const;

    CleanOptions options_;
    platform::Guids& guids_;
    const JoinedFacts& facts_;
    char16_t mark_;
    SpooledTexts cleaned_;
    JoinLimits limits_;
    std::size_t enough_;  // units after which the current part ends

    std::unique_ptr<DocumentMerge> merge_;
    std::u16string head_;    // of the first document, with the placeholders of the merged tables
    std::u16string tail_;    // its last brace, and what follows
    std::int32_t page_ = 0;  // its code page
    std::int32_t font_ = 0;  // its default font
    std::optional<Part> first_;
    PartOfText afterFirst_;
    PartOfText state_;
    Part part_;                   // the current one
    bool isAmbiguous_ = false;    // stages disagree about the end of a row or group
    std::future<bool> cleaning_;  // of a part before the current one; the last member, as it uses others
};

}  // namespace velmor
