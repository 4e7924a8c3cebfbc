#include "rtf/pages/KeepSectionWords.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RowState.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"
#include "text/Compare.h"

namespace velmor {
namespace {

class SectionWordKeeper {
public:
    SectionWordKeeper(std::u16string_view text, std::size_t host, bool mergeMode)
        : text_(text), mergeMode_(mergeMode), sectionBegin_(host) {
        RtfReader reader(text, host, text.size(), true);
        while (reader.next()) {
            depth_ = reader.depth();
            row_.take(reader, depth_);
            if (reader.opens()) {
                if (reader.position() != host) openGroup(reader.position());
            } else if (reader.closes()) {
                closeGroup(reader.position());
            } else {
                takeWord(reader.word());
            }
        }
    }

    TextEdits edits() && { return std::move(edits_); }

private:
    struct SectionWord {
        TextRange place;
        std::size_t depth;
        WordMeaning meaning;
    };
    using SectionWords = std::vector<SectionWord>;

    struct Document {
        std::size_t depth;  // of what it holds
        bool ownsSection;
        bool inBody;  // a section can end in it
    };

    void openGroup(std::size_t index);
    void closeGroup(std::size_t index);
    void closeDocument(std::size_t index);
    void takeWord(const ControlWord& word);
    void endSection(std::size_t index);
    void endSectionInDocument();
    void keepBreak();
    std::u16string textOf(const SectionWords& words, bool (*choose)(WordMeaning)) const;
    bool showsSince(std::size_t begin, std::size_t end) const { return showsText(text_.substr(begin, end - begin)); }

    std::u16string_view text_;
    bool mergeMode_;
    std::size_t depth_ = 0;
    std::size_t sectionBegin_;  // after the last "\sect"
    std::vector<Document> documents_;
    SectionWords inForce_;  // deeper ones follow
    // Of documents that ended, in the section that is read.
    SectionWords ended_;
    SectionWords around_;     // those in force around the last of them
    bool canEnd_ = false;     // the section can end in the last of them
    std::u16string resumed_;  // what the next section says anew if it does not begin with "\sectd"
    RowState row_;
    std::size_t story_ = 0;  // the depth of the group that has paragraphs of its own; 0 in the body
    std::size_t after_ = 0;  // the last of them
    HoldingPlace place_;     // for their words
    TextEdits edits_;
};

void SectionWordKeeper::openGroup(std::size_t index) {
    if (!documentStandsAt(text_, index)) {
        const WordMeaning first = meaningOf(readOpening(text_, index).letters);
        const bool isStory = first.is(WordTrait::hiddenGroup) || first.is(WordTrait::shownGroup);
        if (isStory && story_ == 0) story_ = depth_;
        return;
    }
    const bool begins = mergeMode_ && !showsSince(sectionBegin_, index);
    documents_.push_back({depth_, begins, !row_.inRow() && story_ == 0});
}

void SectionWordKeeper::closeGroup(std::size_t index) {
    if (!documents_.empty() && documents_.back().depth > depth_) closeDocument(index);
    if (story_ > depth_) story_ = 0;
    if (depth_ == 0) endSection(index);
    while (!inForce_.empty() && inForce_.back().depth > depth_) inForce_.pop_back();
    place_.leave({index + 1, depth_});
}

void SectionWordKeeper::closeDocument(std::size_t index) {
    const Document document = documents_.back();
    documents_.pop_back();
    if (!document.ownsSection) return;
    if (!ended_.empty() && showsSince(after_, index)) ended_.clear();
    const auto own = std::find_if(inForce_.begin(), inForce_.end(),
                                  [&](const SectionWord& word) { return word.depth >= document.depth; });
    ended_.insert(ended_.begin(), own, inForce_.end());
    around_.assign(inForce_.begin(), own);
    canEnd_ = document.inBody && !mergeMode_;
    after_ = index + 1;
    place_ = {after_, depth_};
}

void SectionWordKeeper::takeWord(const ControlWord& word) {
    const WordMeaning meaning = meaningOf(word.letters);
    if (meaning.word == Word::sect) {
        endSection(word.begin);
        sectionBegin_ = word.end;
        if (!resumed_.empty() && !wordStandsAt(text_, skipWhiteSpace(text_, word.end), u"\\sectd")) {
            edits_.replaceVal(word.end, word.end, std::exchange(resumed_, {}));
        }
        resumed_.clear();
        for (Document& document : documents_) document.ownsSection = true;
    } else if (meaning.is(WordTrait::section)) {
        // What \sectd resets is of no use; what groups around it say holds again after them.
        const bool resets = meaning.word == Word::sectd;
        while (resets && !inForce_.empty() && inForce_.back().depth == depth_) inForce_.pop_back();
        inForce_.push_back({{word.begin, word.end}, depth_, meaning});
    }
}

void SectionWordKeeper::endSection(std::size_t index) {
    if (ended_.empty()) return;
    if (!showsSince(after_, index)) {
        edits_.replaceApartVal(place_.at, place_.at, textOf(ended_, [](WordMeaning) { return true; }));
    } else if (canEnd_) {
        endSectionInDocument();
    }
    ended_.clear();
}

// Text of the host follows the document in its last section. When that has another page or other columns than the
// text around the document, it ends with the document, and the host's section goes on in a new one.
void SectionWordKeeper::endSectionInDocument() {
    const auto page = [](WordMeaning word) { return word.is(WordTrait::sectionPage); };
    const auto columns = [](WordMeaning word) { return word.is(WordTrait::columns); };
    const bool samePage = textOf(ended_, page) == textOf(around_, page);
    if (samePage && textOf(ended_, columns) == textOf(around_, columns)) return keepBreak();
    edits_.replaceApartVal(after_ - 1, after_ - 1, u"\\sect");
    const auto goesOn = [](WordMeaning word) { return !word.is(WordTrait::sectionStart); };
    edits_.replaceApartVal(place_.at, place_.at,
                           u"\\sectd" + textOf(around_, goesOn) + (samePage ? u"\\sbknone" : u"\\sbkpage"));
    const auto begins = [](WordMeaning word) { return word.is(WordTrait::sectionStart) && word.word != Word::sectd; };
    resumed_ = u"\\sbkpage" + textOf(around_, begins);
}

// The host's text goes on in the document's last section, which begins as it does in the document.
void SectionWordKeeper::keepBreak() {
    const auto isBreak = [](WordMeaning word) { return word.is(WordTrait::sectionBreak); };
    const std::u16string own = textOf(ended_, isBreak), hosts = textOf(around_, isBreak);
    if (own == hosts) return;
    edits_.replaceApartVal(place_.at, place_.at, own.empty() ? u"\\sbkpage" : own);
    resumed_ = hosts.empty() ? u"\\sbkpage" : hosts;
}

std::u16string SectionWordKeeper::textOf(const SectionWords& words, bool (*choose)(WordMeaning)) const {
    std::u16string text;
    for (const SectionWord& word : words) {
        if (choose(word.meaning)) text += word.place.of(text_);
    }
    return text;
}

}  // namespace

void Module1::KeepSectionWords(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument || findText(psText, u"\\sect", host, Comparison::binary) == psText.npos) return;
    SectionWordKeeper(psText, host, options.mergeMode).edits().apply(psText);
}

}  // namespace velmor
