#include "rtf/pages/SectionDescriptions.h"

#include <algorithm>
#include <utility>

#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

bool isPageWord(std::u16string_view text, std::size_t index) noexcept {
    const auto standsHere = [&](std::u16string_view word) { return wordStandsAt(text, index, word); };
    return standsHere(u"\\lndscpsxn") ||
           std::any_of(PageSetup::sectionWords.begin(), PageSetup::sectionWords.end(), standsHere);
}

}  // namespace

SectionDescriptions::SectionDescriptions(std::u16string_view text, bool mergeMode)
    : text_(text), mergeMode_(mergeMode) {
    const std::size_t last = findTextReverse(text, SectionGroups::opening, Comparison::binary);
    if (last == nowhere) return;
    readMarkers(last + 1);
    if (!descriptions_.empty()) writeDescriptions();
}

// Takes every word and brace up to the limit, until `take` returns false.
template <typename Take>
void SectionDescriptions::walk(std::size_t limit, Take take) {
    row_ = {};
    RtfReader reader(text_, 0, limit, true);
    for (depth_ = 0; reader.next() && take(reader.position()); depth_ = reader.depth()) {
        row_.take(reader, reader.depth());
        if (reader.closes() && section_) section_->place.close(reader.position(), reader.depth());
    }
}

bool SectionDescriptions::joinStandsAt(std::size_t index) const noexcept {
    return mergeMode_ && !row_.inRow() && standsAt(text_, index, Module1::mergePageBreakMarker);
}

// ---- Reading the markers

void SectionDescriptions::readMarkers(std::size_t limit) {
    beginDocument(0);
    walk(limit, [&](std::size_t index) {
        if (wordStandsAt(text_, index, u"\\page")) {
            if (!row_.inRow()) document_->pages.push_back(index);
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

void SectionDescriptions::beginDocument(std::size_t begin) {
    const std::size_t next =
        mergeMode_ ? findText(text_, Module1::mergePageBreakMarker, begin, Comparison::binary) : nowhere;
    PageSetup page;
    page.values = PageSetup::defaults;
    SectionGroups groups(text_, begin, std::min(next, text_.size()), page, true);
    document_.emplace(Document{std::move(groups), begin, false, {}, nowhere, nowhere});
}

// False when the stage ends here.
bool SectionDescriptions::takeMarker(std::size_t index) {
    Document& document = *document_;
    if (!document.groups.read(index)) return false;
    const std::size_t name = index + SectionGroups::nameOffset;
    edits_.replaceApartVal(name, name + SectionGroups::doneName.size(), std::u16string(SectionGroups::doneName));
    if (!document.pages.empty()) {
        descriptions_.push_back({document.pages.back(), Beginning::page, document.groups.page().words()});
        document.pages.pop_back();
    } else if (document.defaults != nowhere) {
        describeBeginning(document.defaults, Beginning::defaults);
    } else if (!showsTextUpTo(index)) {
        describeBeginning(document.groups.end() + 1, Beginning::document);
    }
    return true;
}

bool SectionDescriptions::showsTextUpTo(std::size_t index) {
    Document& document = *document_;
    document.shows = document.shows || showsText(text_.substr(document.unread, index - document.unread));
    document.unread = index;
    return document.shows;
}

// Of several markers the last one counts.
void SectionDescriptions::describeBeginning(std::size_t at, Beginning beginning) {
    std::u16string words = document_->groups.page().words();
    if (document_->described == nowhere) {
        document_->described = descriptions_.size();
        descriptions_.push_back({at, beginning, std::move(words)});
    } else {
        descriptions_[document_->described].words = std::move(words);
    }
}

// ---- Writing

void SectionDescriptions::writeDescriptions() {
    std::sort(descriptions_.begin(), descriptions_.end(),
              [](const Description& left, const Description& right) { return left.at < right.at; });
    auto next = descriptions_.begin();
    walk(text_.size(), [&](std::size_t index) {
        const bool begins = next != descriptions_.end() && next->at <= index;
        const bool isBeginning = begins && next->beginning != Beginning::document;
        if (begins) beginSection(*next++);
        if (!isBeginning && (joinStandsAt(index) || wordStandsAt(text_, index, u"\\sect"))) {
            endSection();
        } else if (!isBeginning && section_) {
            takeSectionWord(index);
        }
        return true;
    });
    endSection();
}

void SectionDescriptions::beginSection(const Description& description) {
    endSection();
    std::size_t behind = description.at;
    if (description.beginning != Beginning::document) behind = endWithBlank(text_, readWord(text_, behind));
    if (description.beginning == Beginning::page) edits_.replaceApartVal(description.at, behind, u"\\sect");
    section_ = Section{&description, HoldingPlace(behind, depth_)};
}

void SectionDescriptions::takeSectionWord(std::size_t index) {
    const bool resets = wordStandsAt(text_, index, u"\\sectd");
    if (!resets && !isPageWord(text_, index)) return;
    section_->resets = section_->resets || resets;
    edits_.cut(index, endWithBlank(text_, readWord(text_, index)));
}

void SectionDescriptions::endSection() {
    if (!section_) return;
    const std::size_t at = section_->place.at();
    edits_.replaceApartVal(at, at, (section_->resets ? u"\\sectd" : u"") + section_->description->words);
    section_.reset();
}

}  // namespace velmor
