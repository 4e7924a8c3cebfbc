#include "rtf/pages/SectionMarkers.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/pages/SectionGroups.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RowState.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// Each marker describes a section: the one that the last "\page" before it begins, or that of the last "\sectd",
// or, tolerant, if nothing shows before it, the document's first. Two passes in tolerant cleaning, else one.
class SectionMarkers {
public:
    SectionMarkers(std::u16string_view text, const CleanOptions& options)
        : text_(text), tolerant_(options.tolerant), joined_(options.tolerant && options.mergeMode) {
        const std::size_t last = findTextReverse(text, SectionGroups::opening, Comparison::binary);
        if (last == nowhere) return;
        readMarkers(last + 1);
        if (descriptions_.empty()) return;
        tolerant_ ? writeUpToSectionEnds() : writeInPlace();
    }

    TextEdits edits() && { return std::move(edits_); }

private:
    enum class Beginning { page, defaults, document };

    struct Description {
        std::size_t at;
        Beginning beginning;
        std::u16string words;
    };

    // The document whose markers are read: a joined one, or else the whole text.
    struct Document {
        SectionGroups groups;
        std::size_t unread;                // nothing shows before it
        std::vector<std::size_t> pages{};  // that do not begin a section yet
        std::size_t defaults = nowhere;    // the last "\sectd"
        std::size_t described = nowhere;   // index of the description of `defaults`, or of the document
    };

    // The described section at the current place.
    struct Section {
        const Description* description;
        HoldingPlace place;
        bool resets = false;  // it had a "\sectd"
    };

    // Takes every word and brace up to the limit, with the depth before it, until `take` returns false.
    template <typename Take>
    void walk(std::size_t limit, Take take) {
        row_ = {};
        RtfReader reader(text_, 0, limit, tolerant_);
        for (std::size_t depth = 0; reader.next() && take(reader.position(), depth); depth = reader.depth()) {
            row_.take(reader, reader.depth());
            if (reader.closes() && section_) section_->place.leave({reader.position() + 1, reader.depth()});
        }
    }

    bool joinStandsAt(std::size_t index) const noexcept {
        return joined_ && !row_.inRow() && standsAt(text_, index, Module1::mergePageBreakMarker);
    }

    // ---- Reading the markers

    void readMarkers(std::size_t limit) {
        beginDocument(0);
        walk(limit, [&](std::size_t index, std::size_t) {
            if (wordStandsAt(text_, index, u"\\page")) {
                if (!tolerant_ || !row_.inRow()) document_->pages.push_back(index);
            } else if (wordStandsAt(text_, index, u"\\sectd")) {
                document_->defaults = index;
                document_->described = nowhere;
            } else if (joinStandsAt(index)) {
                beginDocument(index + Module1::mergePageBreakMarker.size());
            } else if (standsAt(text_, index, SectionGroups::opening)) {
                return takeMarker(index);
            }
            return true;
        });
    }

    void beginDocument(std::size_t begin) {
        const std::size_t next =
            joined_ ? findText(text_, Module1::mergePageBreakMarker, begin, Comparison::binary) : nowhere;
        document_.emplace(Document{SectionGroups(text_, begin, std::min(next, text_.size()), tolerant_), begin});
    }

    // False when the stage ends here.
    bool takeMarker(std::size_t index) {
        Document& document = *document_;
        if (!document.groups.read(index)) return false;
        const std::size_t name = index + SectionGroups::nameOffset;
        edits_.replace(name, name + SectionGroups::doneName.size(), SectionGroups::doneName);
        if (!document.pages.empty()) {
            descriptions_.push_back({document.pages.back(), Beginning::page, document.groups.page().words()});
            document.pages.pop_back();
        } else if (document.defaults != nowhere) {
            describe(document.defaults, Beginning::defaults);
        } else if (tolerant_ && !showsTextUpTo(index)) {
            describe(document.groups.end() + 1, Beginning::document);
        }
        return true;
    }

    bool showsTextUpTo(std::size_t index) {
        std::size_t& unread = document_->unread;
        unread += firstShown(text_.substr(unread, index - unread));
        return unread < index;
    }

    // Of several markers the last one counts; in exact cleaning its words precede the others.
    void describe(std::size_t at, Beginning beginning) {
        if (document_->described == nowhere) {
            document_->described = descriptions_.size();
            descriptions_.push_back({at, beginning, {}});
        }
        std::u16string& words = descriptions_[document_->described].words;
        words.replace(0, tolerant_ ? words.size() : 0, document_->groups.page().words());
    }

    // ---- Writing

    void writeInPlace() {
        for (const Description& description : descriptions_) {
            const bool page = description.beginning == Beginning::page;
            const std::size_t end = description.at + 1 + readWord(text_, description.at).letters.size();
            edits_.replaceVal(page ? description.at : end, end, (page ? u"\\sect" : u"") + description.words);
        }
    }

    void writeUpToSectionEnds() {
        std::ranges::sort(descriptions_, {}, &Description::at);
        auto next = descriptions_.begin();
        walk(text_.size(), [&](std::size_t index, std::size_t depth) {
            const bool begins = next != descriptions_.end() && next->at <= index;
            const bool isBeginning = begins && next->beginning != Beginning::document;
            if (begins) beginSection(*next++, depth);
            if (!isBeginning && (joinStandsAt(index) || wordStandsAt(text_, index, u"\\sect"))) {
                endSection();
            } else if (!isBeginning && section_) {
                takeSectionWord(index);
            }
            return true;
        });
        endSection();
    }

    void beginSection(const Description& description, std::size_t depth) {
        endSection();
        std::size_t begin = description.at;
        if (description.beginning != Beginning::document) begin = endWithBlank(text_, readWord(text_, begin));
        if (description.beginning == Beginning::page) edits_.replaceApartVal(description.at, begin, u"\\sect");
        section_ = Section{&description, HoldingPlace{begin, depth}};
    }

    // The described page replaces the section's own.
    void takeSectionWord(std::size_t index) {
        const ControlWord word = readWord(text_, index);
        const bool resets = word.letters == u"sectd";
        if (!resets && word.letters != u"lndscpsxn" && !PageSetup::sectionValue(word.letters)) return;
        section_->resets = section_->resets || resets;
        edits_.cut(index, endWithBlank(text_, word));
    }

    void endSection() {
        if (!section_) return;
        const std::size_t at = section_->place.at;
        edits_.replaceApartVal(at, at, (section_->resets ? u"\\sectd" : u"") + section_->description->words);
        section_.reset();
    }

    std::u16string_view text_;
    bool tolerant_;
    bool joined_;
    std::optional<Document> document_;
    std::vector<Description> descriptions_;
    RowState row_;
    std::optional<Section> section_;
    TextEdits edits_;
};

}  // namespace

void Module1::ApplySectionMarkers(std::u16string& psText, const CleanOptions& options) {
    SectionMarkers(psText, options).edits().apply(psText);
}

}  // namespace velmor
