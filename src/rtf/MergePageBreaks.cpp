#include "rtf/MergePageBreaks.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "rtf/PageSetup.h"
#include "rtf/RtfScanner.h"
#include "rtf/TextEdits.h"
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

std::int32_t wholeNumber(std::u16string_view digits) noexcept {
    const bool negative = digits.substr(0, 1) == u"-";
    if (negative) digits.remove_prefix(1);
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (const char16_t digit : digits) {
        if (digit < u'0' || digit > u'9') return 0;
        value = value * 10 + (digit - u'0');
        if (value > limit + negative) return 0;
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

// What the text behind one marker says about its page. Places are those where each word stands
// first.
class PageReader {
public:
    PageReader(std::u16string_view text, std::size_t begin, std::size_t end) : text_(text.substr(0, end)) {
        documentAt_.fill(nowhere);
        sectionAt_.fill(nowhere);
        RtfScanner scanner(text, begin, end);
        while (scanner.nextWord()) take(scanner.position());
    }

    // A section ends, and none of its pages does: the described slice of the text has no end.
    bool isBroken() const noexcept { return breaks_ && !pages_; }
    // The section's own beginning; nowhere when another section comes before it.
    std::size_t ownSection() const noexcept { return breaksBefore_ ? nowhere : section_; }

    PageSetup page(bool tolerant) const {
        PageSetup page;
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            const bool own = sectionAt_[i] != nowhere;
            const std::size_t at = own ? sectionAt_[i] : documentAt_[i];
            const std::size_t length = (own ? PageSetup::sectionWords : PageSetup::documentWords)[i].size();
            // A number that the section's end cuts off is none; a reader would see it.
            const std::u16string_view text = own && !tolerant ? text_.substr(0, settingsEnd_) : text_;
            std::u16string_view number;
            if (at != nowhere) {
                page.values[i] = numberTextAt(text, at + length, number) ? wholeNumber(number) : 0;
            } else if (tolerant) {
                page.values[i] = PageSetup::defaults[i];
            }
        }
        if (landscape_) {
            page.turnLandscape();
        } else if (portrait_) {
            page.turnPortrait();
        }
        return page;
    }

private:
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
                takeValue(index);
                break;
            case u's':
                if (wordStandsAt(text_, index, sectionWord)) beginSection(index);
                if (wordStandsAt(text_, index, u"\\sect")) takeEnd(index, false);
                break;
            default:
                break;
        }
    }

    // The first \sectd: what was read before it counts for the document alone.
    void beginSection(std::size_t index) {
        if (section_ != nowhere) return;
        section_ = index;
        sectionAt_.fill(nowhere);
        landscape_ = portrait_ = false;
    }

    // A page or section ends: so does what the first section says about itself.
    void takeEnd(std::size_t index, bool page) {
        if (section_ == nowhere) {
            breaksBefore_ = breaksBefore_ || !page;
            return;
        }
        (page ? pages_ : breaks_) = true;
        if (open_) settingsEnd_ = index;
        open_ = false;
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
};

// With the blank that ends it, which would be text otherwise.
void cutWord(TextEdits& edits, std::u16string_view text, std::size_t begin, std::size_t end) {
    const bool ended = end < text.size() && text[end] == u' ';
    edits.cut(begin, ended ? end + 1 : end);
}

}  // namespace

void Module1::ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options) {
    const std::u16string_view text = psText;
    TextEdits edits;
    for (std::size_t at = findMarker(text, 0); at != nowhere;) {
        const std::size_t behind = at + marker.size();
        const std::size_t next = findMarker(text, behind);
        const PageReader reader(text, behind, std::min(next, text.size()));
        if (options.tolerant || !reader.isBroken()) {
            const std::size_t section = options.tolerant ? reader.ownSection() : nowhere;
            std::u16string words = options.tolerant ? u"\\sect\\sectd" : u"\\sect";
            words += reader.page(options.tolerant).words();
            if (options.tolerant) words += u"\\pard\\plain";
            edits.replaceApartVal(at, behind, std::move(words));
            if (section != nowhere) cutWord(edits, text, section, section + sectionWord.size());
        }
        at = next;
    }
    edits.apply(psText);
}

}  // namespace velmor
