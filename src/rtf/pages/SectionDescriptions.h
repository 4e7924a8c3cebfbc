#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/pages/SectionGroups.h"
#include "rtf/read/RowState.h"

namespace velmor {

// Tolerant section markers. Each describes a section: the one that the last "\page" before it begins, or that
// of the last "\sectd", or, if nothing shows before it, the document's first. The words are written where they
// hold to the section's end, and the section's own page words are removed.
//
// In merge mode each joined document counts by itself. A "\page" in a table row begins no section. Two passes,
// no recursion.
class SectionDescriptions {
public:
    SectionDescriptions(std::u16string_view text, bool mergeMode);

    TextEdits edits() && { return std::move(edits_); }

private:
    enum class Beginning { page, defaults, document };

    struct Description {
        std::size_t at;
        Beginning beginning;
        std::u16string words;
    };

    // A document whose markers are read.
    struct Document {
        SectionGroups groups;
        std::size_t unread;                // for content
        bool shows = false;                // something before `unread`
        std::vector<std::size_t> pages{};  // that do not begin a section yet
        std::size_t defaults;              // the last "\sectd"
        std::size_t described;             // index of the description of `defaults`, or of the document
    };

    // The described section at the current place.
    struct Section {
        const Description* description;
        HoldingPlace place;
        bool resets = false;  // it had a "\sectd"
    };

    template <typename Take>
    void walk(std::size_t limit, Take take);
    bool joinStandsAt(std::size_t index) const noexcept;

    void readMarkers(std::size_t limit);
    void beginDocument(std::size_t begin);
    bool takeMarker(std::size_t index);
    bool showsTextUpTo(std::size_t index);
    void describeBeginning(std::size_t at, Beginning beginning);

    void writeDescriptions();
    void beginSection(const Description& description);
    void takeSectionWord(std::size_t index);
    void endSection();

    std::u16string_view text_;
    bool mergeMode_;
    std::optional<Document> document_;
    std::vector<Description> descriptions_;
    std::size_t depth_ = 0;
    RowState row_;
    std::optional<Section> section_;
    TextEdits edits_;
};

}  // namespace velmor
