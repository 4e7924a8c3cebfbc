#include "rtf/MergePageBreaks.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/BraceScanner.h"
#include "rtf/JoinedHeaders.h"
#include "rtf/PageSetup.h"
#include "rtf/RtfScanner.h"
#include "rtf/TextEdits.h"
#include "rtf/WholeNumber.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view marker = Module1::mergePageBreakMarker;
constexpr std::u16string_view sectionWord = u"\\sectd";
constexpr std::size_t nowhere = std::u16string_view::npos;

std::size_t findMarker(std::u16string_view text, std::size_t from) noexcept {
    while ((from = findText(text, marker, from, Comparison::binary)) != nowhere && isEscaped(text, from)) ++from;
    return from;
}

// What one of the joined documents says about its pages. Places are those where each word stands first.
class PageReader {
public:
    PageReader(std::u16string_view text, std::size_t begin, std::size_t end, bool tolerant)
        : text_(text.substr(0, end)), tolerant_(tolerant) {
        documentAt_.fill(nowhere);
        sectionAt_.fill(nowhere);
        RtfScanner scanner(text, begin, end);
        while (scanner.nextWord()) take(scanner.position());
    }

    // A section ends, and none of its pages does: the described slice of the text has no end.
    bool isBroken() const noexcept { return breaks_ && !pages_; }
    // Where its first section begins; nowhere when another section comes before it.
    std::size_t firstSection() const noexcept { return breaksBefore_ ? nowhere : section_; }
    bool holdsDocument() const noexcept { return document_; }

    // A word of a section that cannot stay as it is.
    struct SectionWord {
        TextRange place;
        bool resets;  // \sectd of a later section; else one by which the first would run on
    };
    // In tolerant cleaning; in ascending order.
    const std::vector<SectionWord>& sectionWords() const noexcept { return sectionWords_; }

    // What \sectd goes back to.
    PageSetup documentPage() const {
        PageSetup page;
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) page.values[i] = documentValue(i);
        return page;
    }

    PageSetup page() const {
        PageSetup page;
        // A number that the section's end cuts off is none; a reader would see it.
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
    static std::int32_t valueAt(std::u16string_view text, std::size_t index, std::u16string_view word) {
        std::u16string_view number;
        return numberTextAt(text, index + word.size(), number) ? wholeNumber(number).value_or(0) : 0;
    }

    std::int32_t documentValue(std::size_t i) const {
        if (documentAt_[i] != nowhere) return valueAt(text_, documentAt_[i], PageSetup::documentWords[i]);
        return tolerant_ ? PageSetup::defaults[i] : 0;
    }

    void take(std::size_t index) {
        switch (text_[index + 1]) {
            case u'f':
            case u'h':
            case u't':
                break;
            case u'l':
                landscape_ = landscape_ || (open_ && standsAt(text_, index, u"\\lndscpsxn"));
                break;
            case u'm':
                takeValue(index);
                break;
            case u'p':
                portrait_ = portrait_ || (open_ && standsAt(text_, index, u"\\portrait"));
                if (wordStandsAt(text_, index, u"\\page")) takeEnd(index, true);
                takeValue(index);
                break;
            case u'r':
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

    // The first \sectd: what was read before it counts for the document alone. To a reader, one behind
    // a section break says nothing of the section in front.
    void beginSection(std::size_t index) {
        if (section_ != nowhere || !open_) {
            if (tolerant_) sectionWords_.push_back({{index, index + sectionWord.size()}, true});
            return;
        }
        sectionWords_.clear();
        section_ = index;
        sectionAt_.fill(nowhere);
        landscape_ = portrait_ = false;
    }

    // A page or section ends: so does what the first section says about itself.
    void takeEnd(std::size_t index, bool page) {
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
            if (wordStandsAt(text_, index, word)) sectionWords_.push_back({{index, index + word.size()}, false});
        }
    }

    void takeValue(std::size_t index) {
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            if (open_ && sectionAt_[i] == nowhere && standsAt(text_, index, PageSetup::sectionWords[i])) {
                sectionAt_[i] = index;
            }
            if (documentAt_[i] == nowhere && wordStandsAt(text_, index, PageSetup::documentWords[i])) {
                documentAt_[i] = index;
            }
        }
    }

    std::u16string_view text_;
    bool tolerant_;
    std::array<std::size_t, PageSetup::valueCount> sectionAt_;
    std::array<std::size_t, PageSetup::valueCount> documentAt_;
    std::size_t section_ = nowhere;
    std::size_t settingsEnd_ = nowhere;
    bool open_ = true;  // what is read belongs to the settings
    bool landscape_ = false;
    bool portrait_ = false;
    bool pages_ = false;
    bool breaks_ = false;
    bool breaksBefore_ = false;
    bool document_ = false;
    std::vector<SectionWord> sectionWords_;
};

// The breaks of a whole text.
class MergeBreaks {
public:
    MergeBreaks(std::u16string_view text, bool tolerant) : text_(text), tolerant_(tolerant) { read(); }

    void separateHeaders() {
        auto changes = JoinedHeaders(text_, joins_).changes();
        changes_.insert(changes_.end(), std::make_move_iterator(changes.begin()),
                        std::make_move_iterator(changes.end()));
    }

    TextEdits edits();

private:
    void read();
    void replace(std::size_t at, const PageReader& reader);
    void keepSections(const PageReader& reader);
    bool endsWithRow(std::size_t at) const;
    // With the blank that ends it, which would be text otherwise.
    void cutWord(std::size_t begin, std::size_t end) {
        const bool ended = end < text_.size() && text_[end] == u' ';
        changes_.push_back({begin, ended ? end + 1 : end, {}});
    }

    std::u16string_view text_;
    bool tolerant_;
    PageSetup hostPage_;
    std::vector<JoinedHeaders::Join> joins_;
    std::vector<JoinedHeaders::Change> changes_;
};

void MergeBreaks::read() {
    std::size_t at = findMarker(text_, 0);
    if (at == nowhere) return;
    const PageReader host(text_, 0, at, tolerant_);
    hostPage_ = host.documentPage();
    keepSections(host);
    while (at != nowhere) {
        const std::size_t behind = at + marker.size();
        const std::size_t next = findMarker(text_, behind);
        const PageReader reader(text_, behind, std::min(next, text_.size()), tolerant_);
        if (tolerant_ || !reader.isBroken()) {
            replace(at, reader);
            keepSections(reader);
        }
        at = next;
    }
}

void MergeBreaks::replace(std::size_t at, const PageReader& reader) {
    const std::size_t behind = at + marker.size();
    const std::size_t section = reader.firstSection();
    const std::u16string page = reader.page().words();
    std::u16string words = tolerant_ ? u"\\sect\\sectd" + page + u"\\pard\\plain\\uc1" : u"\\sect" + page;
    if (tolerant_ && endsWithRow(at)) words.insert(0, u"\\pard\\par");
    changes_.push_back({at, behind, std::move(words)});
    if (tolerant_ && section != nowhere) cutWord(section, section + sectionWord.size());
    joins_.push_back({behind, reader.holdsDocument()});
}

// A document begins on a page of its own (the host does anyway, yet readers carry such a word on to the
// section behind), and its sections go back to its page, not to the host's.
void MergeBreaks::keepSections(const PageReader& reader) {
    const std::u16string page = reader.documentPage().wordsUnlike(hostPage_);
    for (const auto& word : reader.sectionWords()) {
        if (!word.resets) {
            cutWord(word.place.begin, word.place.end);
        } else if (!page.empty()) {
            changes_.push_back({word.place.end, word.place.end, page});
        }
    }
}

// Whether the text in front has no paragraph behind its last table, in which the break would be.
bool MergeBreaks::endsWithRow(std::size_t at) const {
    constexpr std::u16string_view row = u"\\row";
    while (at > 0 && (isWhiteSpace(text_[at - 1]) || text_[at - 1] == u'}')) --at;
    return at >= row.size() && standsAt(text_, at - row.size(), row) && !isEscaped(text_, at - row.size());
}

// What is put in goes in front of what is taken out there; a change that lies in another one is lost in it.
TextEdits MergeBreaks::edits() {
    const auto place = [](const auto& change) { return std::pair(change.begin, change.end); };
    std::stable_sort(changes_.begin(), changes_.end(),
                     [&](const auto& left, const auto& right) { return place(left) < place(right); });
    TextEdits edits;
    std::size_t behind = 0;
    for (JoinedHeaders::Change& change : changes_) {
        if (change.begin < behind) continue;
        behind = change.end;
        edits.replaceApartVal(change.begin, change.end, std::move(change.text));
    }
    return edits;
}

}  // namespace

void Module1::ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders) {
    MergeBreaks breaks(psText, options.tolerant);
    if (pbHeaders) breaks.separateHeaders();
    breaks.edits().apply(psText);
}

}  // namespace velmor
