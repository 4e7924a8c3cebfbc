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

constexpr std::u16string_view marker = Module1::mergePageBreakMarker;
constexpr std::u16string_view sectionWord = u"\\sectd";
constexpr std::size_t nowhere = std::u16string_view::npos;

// The pages of one joined document. Places are those of each word's first occurrence.
class PageReader {
public:
    // The document begins at the index, in `depth` open groups.
    PageReader(std::size_t begin, std::size_t depth, bool tolerant)
        : tolerant_(tolerant), depth_(depth), place_(begin, depth) {
        documentAt_.fill(nowhere);
        sectionAt_.fill(nowhere);
    }

    // Reads from `begin` to the end of the text.
    void read(std::u16string_view text, std::size_t begin);

    std::size_t depth() const noexcept { return depth_; }
    bool inRow() const noexcept { return row_.inRow(); }
    // Whether the document ends with a row, to which a break would belong.
    bool endsWithRow() const { return lastRow_ != nowhere && !showsText(text_.substr(lastRow_)); }
    // The place where the words of the first section hold to its end.
    std::size_t place() const noexcept { return place_.at(); }

    // A section ends without a page break: the described part of the text has no end.
    bool isBroken() const noexcept { return breaks_ && !pages_; }
    // The begin of its first section; nowhere when another section precedes it.
    std::size_t firstSection() const noexcept { return breaksBefore_ ? nowhere : section_; }
    bool holdsDocument() const noexcept { return document_; }

    // A word of a section that must be changed.
    struct SectionWord {
        TextRange place;
        bool resets;  // \sectd of a later section; else a word that continues the previous page
    };
    // In tolerant cleaning; in ascending order.
    const std::vector<SectionWord>& sectionWords() const noexcept { return sectionWords_; }

    // The page that \sectd restores.
    PageSetup documentPage() const {
        PageSetup page;
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) page.values[i] = documentValue(i);
        return page;
    }

    PageSetup page() const {
        PageSetup page;
        // Exact cleaning ignores a number that ends with the section; a reader would accept it.
        const std::u16string_view settings = tolerant_ ? text_ : text_.substr(0, settingsEnd_);
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            const bool own = sectionAt_[i] != nowhere;
            page.values[i] = own ? valueAt(settings, sectionAt_[i], PageSetup::sectionWords[i]) : documentValue(i);
        }
        if (landscape_) {
            page.turnLandscape();
        } else if (portrait_) {
            page.turnPortrait();
        }
        return page;
    }

private:
    std::int32_t valueAt(std::u16string_view text, std::size_t index, std::u16string_view word) const {
        return wholeNumber(wordNumberAt(text, index, word, tolerant_).value_or(u"")).value_or(0);
    }

    std::int32_t documentValue(std::size_t i) const {
        if (documentAt_[i] != nowhere) return valueAt(text_, documentAt_[i], PageSetup::documentWords[i]);
        return tolerant_ ? PageSetup::defaults[i] : 0;
    }

    void take(std::size_t index) {
        switch (text_[index + 1]) {
            case u'l':
                landscape_ = landscape_ || (open_ && standsAt(text_, index, u"\\lndscpsxn"));
                break;
            case u'm':
                takeValue(index);
                break;
            case u'p':
                portrait_ = portrait_ || (open_ && standsAt(text_, index, u"\\portrait"));
                if (wordStandsAt(text_, index, u"\\page")) takeEnd(index, true);
                if (wordStandsAt(text_, index, u"\\par")) lastRow_ = nowhere;
                takeValue(index);
                break;
            case u'r':
                if (wordStandsAt(text_, index, u"\\row")) lastRow_ = index + 4;
                document_ = document_ || (index > 0 && documentStandsAt(text_, index - 1));
                break;
            case u's':
                if (wordStandsAt(text_, index, sectionWord)) beginSection(index);
                if (wordStandsAt(text_, index, u"\\sect")) takeEnd(index, false);
                takeRunningOn(index);
                break;
            default:
                break;
        }
    }

    // The first \sectd: the words before it count for the document only. For a reader, a \sectd after a section
    // break does not describe the previous section.
    void beginSection(std::size_t index) {
        if (section_ != nowhere || !open_) {
            if (tolerant_) sectionWords_.push_back({wordAt(index), true});
            return;
        }
        sectionWords_.clear();
        section_ = index;
        sectionAt_.fill(nowhere);
        landscape_ = portrait_ = false;
    }

    // A page or section ends, and with it the words of the first section.
    void takeEnd(std::size_t index, bool page) {
        ended_ = ended_ || !page;
        if (section_ == nowhere) {
            breaksBefore_ = breaksBefore_ || !page;
            open_ = open_ && !(tolerant_ && breaksBefore_);
            return;
        }
        (page ? pages_ : breaks_) = true;
        if (open_) settingsEnd_ = index;
        open_ = false;
    }

    void takeRunningOn(std::size_t index) {
        if (!tolerant_ || !open_) return;
        for (const std::u16string_view word : {u"\\sbknone", u"\\sbkcol"}) {
            if (wordStandsAt(text_, index, word)) sectionWords_.push_back({wordAt(index), false});
        }
    }

    // With the blank that ends it.
    TextRange wordAt(std::size_t index) const { return {index, endWithBlank(text_, readWord(text_, index))}; }

    void takeValue(std::size_t index) {
        const std::u16string_view letters = readWord(text_, index).letters;
        const auto own = PageSetup::sectionValue(letters), whole = PageSetup::documentValue(letters);
        if (own && open_ && sectionAt_[*own] == nowhere) sectionAt_[*own] = index;
        if (whole && documentAt_[*whole] == nowhere) documentAt_[*whole] = index;
    }

    std::u16string_view text_;
    bool tolerant_;
    std::array<std::size_t, PageSetup::valueCount> sectionAt_;
    std::array<std::size_t, PageSetup::valueCount> documentAt_;
    std::size_t section_ = nowhere;
    std::size_t settingsEnd_ = nowhere;
    bool open_ = true;  // the current words belong to the settings
    bool landscape_ = false;
    bool portrait_ = false;
    bool pages_ = false;
    bool breaks_ = false;
    bool breaksBefore_ = false;
    bool document_ = false;
    std::vector<SectionWord> sectionWords_;
    std::size_t depth_;
    RowState row_;
    std::size_t lastRow_ = nowhere;  // after the last \row, until a paragraph ends
    HoldingPlace place_;
    bool ended_ = false;  // the first section
};

void PageReader::read(std::u16string_view text, std::size_t begin) {
    text_ = text;
    RtfReader reader(text, begin, text.size(), tolerant_);
    while (reader.next()) {
        const std::size_t index = reader.position();
        if (reader.opens()) {
            ++depth_;
            continue;
        }
        if (reader.closes() && depth_ > 0) --depth_;
        row_.take(reader, depth_);
        if (!reader.closes()) {
            take(index);
        } else if (!ended_) {
            place_.close(index, depth_);
        }
    }
}

// The breaks of a whole text.
class MergeBreaks {
public:
    MergeBreaks(std::u16string_view text, bool tolerant) : text_(text), tolerant_(tolerant) { read(); }

    void separateHeaders() { JoinedHeaders(text_, joins_, tolerant_, edits_); }
    TextEdits edits() && { return std::move(edits_); }

private:
    void read();
    void finish(const PageReader& reader);
    void replace(std::size_t at, const PageReader& reader);
    void keepSections(const PageReader& reader);

    std::u16string_view text_;
    bool tolerant_;
    PageSetup hostPage_;
    std::size_t marker_ = nowhere;  // before the current document
    bool behindRow_ = false;        // that marker follows a row
    std::vector<JoinedHeaders::Join> joins_;
    TextEdits edits_;
};

// No section can begin in a table row: a marker there ends a paragraph only.
void MergeBreaks::read() {
    RtfSearch markers(text_);
    std::size_t at = markers.find(marker, 0);
    if (at == nowhere) return;
    PageReader reader(0, 0, tolerant_);
    for (std::size_t begin = 0; begin <= text_.size(); at = markers.find(marker, begin)) {
        const bool last = at == nowhere;
        reader.read(text_.substr(0, at), begin);
        begin = last ? text_.size() + 1 : at + marker.size();
        if (!last && reader.inRow()) {
            edits_.replaceApartVal(at, begin, u"\\par");
            continue;
        }
        finish(reader);
        marker_ = at;
        behindRow_ = reader.endsWithRow();
        reader = PageReader(begin, reader.depth(), tolerant_);
    }
}

// A document was read to its end; a marker may precede it.
void MergeBreaks::finish(const PageReader& reader) {
    if (marker_ == nowhere) {
        hostPage_ = reader.documentPage();
    } else if (tolerant_ || !reader.isBroken()) {
        replace(marker_, reader);
    } else {
        return;
    }
    keepSections(reader);
}

void MergeBreaks::replace(std::size_t at, const PageReader& reader) {
    const std::size_t behind = at + marker.size();
    const std::u16string page = reader.page().words();
    joins_.push_back({at, behind, reader.holdsDocument()});
    if (!tolerant_) return edits_.replaceApartVal(at, behind, u"\\sect" + page);
    constexpr std::u16string_view fresh = u"\\pard\\plain\\uc1";
    const std::size_t place = reader.place();
    std::u16string words = behindRow_ ? u"\\pard\\par\\sect" : u"\\sect";
    std::u16string description = u"\\sectd" + page;
    if (place == behind) {
        words += description + std::u16string(fresh);
    } else {
        words += fresh;
        if (!showsText(text_.substr(behind, place - behind))) description += fresh;
        edits_.replaceApartVal(place, place, std::move(description));
    }
    edits_.replaceApartVal(at, behind, std::move(words));
    const std::size_t section = reader.firstSection();
    if (section != nowhere) edits_.cut(section, endWithBlank(text_, readWord(text_, section)));
}

// A document begins on a new page (the host does anyway, but readers apply the word to the next section too),
// and its sections return to its page, not to the host's.
void MergeBreaks::keepSections(const PageReader& reader) {
    const std::u16string page = reader.documentPage().wordsUnlike(hostPage_);
    for (const auto& word : reader.sectionWords()) {
        if (!word.resets) {
            edits_.cut(word.place.begin, word.place.end);
        } else if (!page.empty()) {
            edits_.replaceApartVal(word.place.end, word.place.end, page);
        }
    }
}

}  // namespace

void Module1::ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders) {
    MergeBreaks breaks(psText, options.tolerant);
    if (pbHeaders) breaks.separateHeaders();
    std::move(breaks).edits().apply(psText);
}

}  // namespace velmor
