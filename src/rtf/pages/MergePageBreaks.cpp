#include "rtf/pages/MergePageBreaks.h"

#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/pages/JoinedHeaders.h"
#include "rtf/pages/PageSetup.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RowState.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr std::u16string_view breakMarker = Module1::mergePageBreakMarker;

// One joined document, and its page. Of each word the first occurrence counts.
class JoinedDocument {
public:
    // The document begins at the index, in `depth` open groups.
    JoinedDocument(std::u16string_view text, std::size_t begin, std::size_t depth, bool tolerant)
        : text_(text), tolerant_(tolerant), place_{begin, depth} {
        documentAt_.fill(nowhere);
        sectionAt_.fill(nowhere);
    }

    // Takes the word or brace that the reader is at.
    void take(const RtfReader& reader) {
        row_.take(reader, reader.depth());
        if (reader.opens()) {
            document_ = document_ || documentStandsAt(text_, reader.position());
        } else if (!reader.closes()) {
            takeWord(reader.word());
        } else if (!ended_) {
            place_.leave({reader.position() + 1, reader.depth()});
        }
    }

    void endAt(std::size_t index) { text_ = text_.substr(0, index); }

    // ---- What was read

    bool inRow() const noexcept { return row_.inRow(); }
    // Whether the document ends with a row, to which a break would belong.
    bool endsWithRow() const { return lastRow_ != nowhere && !showsText(text_.substr(lastRow_)); }
    // The place where the words of the first section hold to its end.
    std::size_t place() const noexcept { return place_.at; }

    // A section ends without a page break: the described part of the text has no end.
    bool isBroken() const noexcept { return breaks_ && !pages_; }
    // The first \sectd. Tolerant: nowhere when it does not describe the first section.
    std::size_t firstSection() const noexcept { return section_; }
    bool holdsDocument() const noexcept { return document_; }
    bool hasFacingPages() const noexcept { return facing_; }

    // A word of a section that must be changed.
    struct SectionWord {
        TextRange place;  // with the blank that ends it
        bool resets;      // \sectd of a later section; else a word that continues the previous page
    };
    // In tolerant cleaning; in ascending order.
    const std::vector<SectionWord>& sectionWords() const noexcept { return sectionWords_; }

    // The page that \sectd restores.
    PageSetup documentPage() const {
        PageSetup page;
        if (tolerant_) page.values = PageSetup::defaults;
        readValues(page, text_, PageSetup::documentWords, documentAt_);
        return page;
    }

    PageSetup page() const {
        PageSetup page = documentPage();
        // Exact cleaning ignores a number that ends with the section; a reader would accept it.
        const std::u16string_view settings = tolerant_ ? text_ : text_.substr(0, settingsEnd_);
        readValues(page, settings, PageSetup::sectionWords, sectionAt_);
        if (landscape_ || portrait_) page.turn(landscape_);
        return page;
    }

private:
    using Places = std::array<std::size_t, PageSetup::valueCount>;  // nowhere for absent words

    void readValues(PageSetup& page, std::u16string_view text, const PageSetup::Words& words, const Places& at) const {
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            if (at[i] == nowhere) continue;
            page.values[i] = wholeNumber(wordNumberAt(text, at[i], words[i], tolerant_).value_or(u"")).value_or(0);
        }
    }

    void takeWord(const ControlWord& word) {
        const Word meaning = meaningOf(word.letters).word;
        if (meaning == Word::facingp) {
            facing_ = true;
        } else if (meaning == Word::page || meaning == Word::sect) {
            takeEnd(word);
        } else if (meaning == Word::par || meaning == Word::row) {
            lastRow_ = meaning == Word::row ? word.end : nowhere;
        } else if (meaning == Word::sectd) {
            beginSection(word);
        } else {
            takeSetting(word);
        }
    }

    // The first \sectd: the words before it count for the document only. For a reader, a \sectd after a section
    // break does not describe the previous section.
    void beginSection(const ControlWord& word) {
        if (section_ != nowhere || !open_) return takeSectionWord(word, true);
        sectionWords_.clear();
        section_ = word.begin;
        sectionAt_.fill(nowhere);
        landscape_ = portrait_ = false;
    }

    // A page or section ends, and with it the words of the first section.
    void takeEnd(const ControlWord& word) {
        const bool page = word.letters == u"page";
        ended_ = ended_ || !page;
        if (section_ == nowhere) {
            if (tolerant_ && !page) open_ = false;
            return;
        }
        (page ? pages_ : breaks_) = true;
        if (open_) settingsEnd_ = word.begin;
        open_ = false;
    }

    void takeSetting(const ControlWord& word) {
        const auto whole = PageSetup::documentValue(word.letters), own = PageSetup::sectionValue(word.letters);
        if (whole && documentAt_[*whole] == nowhere) documentAt_[*whole] = word.begin;
        if (!open_) return;
        if (own && sectionAt_[*own] == nowhere) sectionAt_[*own] = word.begin;
        landscape_ = landscape_ || word.letters.starts_with(u"lndscpsxn");
        portrait_ = portrait_ || word.letters.starts_with(u"portrait");
        if (word.letters == u"sbknone" || word.letters == u"sbkcol") takeSectionWord(word, false);
    }

    void takeSectionWord(const ControlWord& word, bool resets) {
        if (tolerant_) sectionWords_.push_back({{word.begin, endWithBlank(text_, word)}, resets});
    }

    std::u16string_view text_;
    bool tolerant_;
    Places sectionAt_;
    Places documentAt_;
    std::size_t section_ = nowhere;
    std::size_t settingsEnd_ = nowhere;
    bool open_ = true;  // the current words belong to the settings
    bool landscape_ = false;
    bool portrait_ = false;
    bool pages_ = false;
    bool breaks_ = false;
    bool document_ = false;
    bool facing_ = false;
    std::vector<SectionWord> sectionWords_;
    RowState row_;
    std::size_t lastRow_ = nowhere;  // after the last \row, until a paragraph ends
    HoldingPlace place_;
    bool ended_ = false;  // the first section
};

// The breaks of a whole text.
class MergeBreaks {
public:
    MergeBreaks(std::u16string_view text, bool tolerant, bool headers, JoinedPart& part)
        : text_(text), tolerant_(tolerant), part_(part) {
        if (RtfSearch(text_).find(breakMarker, 0) == nowhere) return;
        JoinedDocument document(text_, 0, 0, tolerant_);
        for (RtfReader reader(text_, 0, text_.size(), tolerant_); reader.next();) {
            const std::size_t at = reader.position(), end = at + breakMarker.size();
            if (!standsAt(text_, at, breakMarker)) {
                document.take(reader);
            } else if (document.inRow()) {
                edits_.replaceApartVal(at, end, u"\\par");  // no section can begin in a table row
            } else {
                document.endAt(at);
                finish(document);
                marker_ = at;
                followsRow_ = document.endsWithRow();
                document = JoinedDocument(text_, end, reader.depth() - 1, tolerant_);
            }
        }
        finish(document);
        if (headers) JoinedHeaders(text_, joins_, tolerant_, part_, edits_);
    }

    TextEdits edits() && { return std::move(edits_); }

private:
    // A document was read to its end; a marker may precede it.
    void finish(const JoinedDocument& document) {
        if (marker_ == nowhere) {
            if (!part_.goesOn) part_.hostPage = document.documentPage();
            joins_.push_back({0, 0, true, document.hasFacingPages()});
        } else if (tolerant_ || !document.isBroken()) {
            replaceMarker(document);
        } else {
            joins_.back().facing = joins_.back().facing || document.hasFacingPages();
        }
        keepSections(document);
    }

    void replaceMarker(const JoinedDocument& document) {
        const std::size_t at = marker_, after = at + breakMarker.size();
        const std::u16string page = document.page().words();
        joins_.push_back({at, after, document.holdsDocument(), document.hasFacingPages()});
        if (!tolerant_) return edits_.replaceApartVal(at, after, u"\\sect" + page);
        constexpr std::u16string_view fresh = u"\\pard\\plain\\uc1";
        const std::size_t place = document.place();
        std::u16string words = followsRow_ ? u"\\pard\\par\\sect" : u"\\sect";
        std::u16string description = u"\\sectd" + page;
        if (place == after) {
            words += description + std::u16string(fresh);
        } else {
            words += fresh;
            if (!showsText(text_.substr(after, place - after))) description += fresh;
            edits_.replaceApartVal(place, place, std::move(description));
        }
        edits_.replaceApartVal(at, after, std::move(words));
        const std::size_t section = document.firstSection();
        if (section != nowhere) edits_.cut(section, endWithBlank(text_, readWord(text_, section)));
    }

    // A document begins on a new page (the host does anyway, but readers apply the word to the next section too),
    // and its sections return to its page, not to the host's.
    void keepSections(const JoinedDocument& document) {
        const std::u16string page = document.documentPage().wordsUnlike(part_.hostPage);
        for (const auto& word : document.sectionWords()) {
            if (!word.resets) {
                edits_.cut(word.place.begin, word.place.end);
            } else if (!page.empty()) {
                edits_.replaceApartVal(word.place.end, word.place.end, page);
            }
        }
    }

    std::u16string_view text_;
    bool tolerant_;
    JoinedPart& part_;
    std::size_t marker_ = nowhere;  // before the current document
    bool followsRow_ = false;       // that marker follows a row
    std::vector<JoinedHeaders::Join> joins_;
    TextEdits edits_;
};

}  // namespace

void Module1::ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders,
                                   JoinedPart& poPart) {
    MergeBreaks(psText, options.tolerant, pbHeaders, poPart).edits().apply(psText);
}

bool Module1::continuesSection(std::u16string_view psDocument) {
    JoinedDocument document(psDocument, 0, 0, false);
    for (RtfReader reader(psDocument, 0, psDocument.size()); reader.next();) document.take(reader);
    return document.isBroken();
}

}  // namespace velmor
