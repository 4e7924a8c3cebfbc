#include "rtf/pages/KeepSectionWords.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"
#include "text/Compare.h"

namespace velmor {
namespace {

// The words that give a section its page or its columns.
bool setsPage(std::u16string_view letters) noexcept {
    return letters.ends_with(u"sxn");
}

bool setsColumns(std::u16string_view letters) noexcept {
    return letters.starts_with(u"col") || letters == u"linebetcol";
}

// The words that a section must not have when it only goes on with one that was interrupted: it begins no page of
// its own kind, and counts on.
bool beginsAnew(std::u16string_view letters) noexcept {
    return letters == u"sectd" || letters == u"titlepg" || letters.starts_with(u"sbk") || letters == u"pgnrestart" ||
           letters == u"pgnstarts" || letters == u"linerestart" || letters == u"linestarts";
}

class SectionWordKeeper {
public:
    SectionWordKeeper(std::u16string_view text, std::size_t host, bool mergeMode)
        : text_(text), mergeMode_(mergeMode), sectionBegin_(host), place_(0, 0) {
        RtfReader reader(text, host, text.size(), true);
        while (reader.next()) {
            if (reader.opens()) {
                openGroup(reader.position(), host);
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
    };
    using SectionWords = std::vector<SectionWord>;

    struct Document {
        std::size_t depth;  // of what it holds
        bool ownsSection;
        bool inBody;  // a section can end in it
    };

    void openGroup(std::size_t index, std::size_t host);
    void closeGroup(std::size_t index);
    void closeDocument(std::size_t index);
    void takeWord(const ControlWord& word);
    void endSection(std::size_t index);
    void endSectionInDocument();
    template <typename Choose>
    std::u16string textOf(const SectionWords& words, Choose choose) const;
    bool showsSince(std::size_t begin, std::size_t end) const { return showsText(text_.substr(begin, end - begin)); }

    std::u16string_view text_;
    bool mergeMode_;
    std::size_t depth_ = 0;
    std::size_t sectionBegin_;  // behind the last "\sect"
    std::vector<Document> documents_;
    SectionWords inForce_;  // deeper ones follow
    // Of documents that ended, in the section that is read.
    SectionWords ended_;
    SectionWords around_;     // those in force where the last of them stands
    bool canEnd_ = false;     // the section can end in the last of them
    std::u16string resumed_;  // what the next section says anew if it does not begin with "\sectd"
    bool inRow_ = false;
    std::size_t story_ = 0;   // the depth of the group that has paragraphs of its own; 0 in the body
    std::size_t behind_ = 0;  // the last of them
    HoldingPlace place_;      // for their words
    TextEdits edits_;
};

void SectionWordKeeper::openGroup(std::size_t index, std::size_t host) {
    ++depth_;
    if (index == host) return;
    if (!documentStandsAt(text_, index)) {
        const std::u16string_view first = readOpening(text_, index).letters;
        const bool isStory = wordIs(WordTrait::hiddenGroup, first) || wordIs(WordTrait::shownGroup, first);
        if (isStory && story_ == 0) story_ = depth_;
        return;
    }
    const bool begins = mergeMode_ && !showsSince(sectionBegin_, index);
    documents_.push_back({depth_, begins, !inRow_ && story_ == 0});
}

void SectionWordKeeper::closeGroup(std::size_t index) {
    if (!documents_.empty() && documents_.back().depth == depth_) closeDocument(index);
    if (story_ == depth_) story_ = 0;
    if (depth_ > 0) --depth_;
    if (depth_ == 0) endSection(index);
    while (!inForce_.empty() && inForce_.back().depth > depth_) inForce_.pop_back();
    place_.close(index, depth_);
}

void SectionWordKeeper::closeDocument(std::size_t index) {
    const Document document = documents_.back();
    documents_.pop_back();
    if (!document.ownsSection) return;
    if (!ended_.empty() && showsSince(behind_, index)) ended_.clear();
    const auto own = std::find_if(inForce_.begin(), inForce_.end(),
                                  [&](const SectionWord& word) { return word.depth >= document.depth; });
    ended_.insert(ended_.begin(), own, inForce_.end());
    around_.assign(inForce_.begin(), own);
    canEnd_ = document.inBody && !mergeMode_;
    behind_ = index + 1;
    place_ = HoldingPlace(behind_, depth_ - 1);
}

void SectionWordKeeper::takeWord(const ControlWord& word) {
    if (word.letters == u"sect") {
        endSection(word.begin);
        sectionBegin_ = word.end;
        if (!resumed_.empty() && !wordStandsAt(text_, skipWhiteSpace(text_, word.end), u"\\sectd")) {
            edits_.replaceVal(word.end, word.end, std::exchange(resumed_, {}));
        }
        resumed_.clear();
        for (Document& document : documents_) document.ownsSection = true;
    } else if (word.letters == u"trowd" || word.letters == u"intbl") {
        inRow_ = true;
    } else if (word.letters == u"row" || word.letters == u"pard") {
        inRow_ = false;
    } else if (wordIs(WordTrait::section, word.letters)) {
        // What it resets is of no use; what groups around it say holds again behind them.
        while (word.letters == u"sectd" && !inForce_.empty() && inForce_.back().depth == depth_) inForce_.pop_back();
        inForce_.push_back({{word.begin, word.end}, depth_});
    }
}

void SectionWordKeeper::endSection(std::size_t index) {
    if (ended_.empty()) return;
    if (!showsSince(behind_, index)) {
        edits_.replaceApartVal(place_.at(), place_.at(), textOf(ended_, [](auto) { return true; }));
    } else if (canEnd_) {
        endSectionInDocument();
    }
    ended_.clear();
}

// Text of the host follows the document in its last section. When that has another page or other columns than the
// text around the document, it ends with the document, and the host's section goes on in a new one.
void SectionWordKeeper::endSectionInDocument() {
    const bool samePage = textOf(ended_, setsPage) == textOf(around_, setsPage);
    if (samePage && textOf(ended_, setsColumns) == textOf(around_, setsColumns)) return;
    edits_.replaceApartVal(behind_ - 1, behind_ - 1, u"\\sect");
    std::u16string words = u"\\sectd";
    words += textOf(around_, [](std::u16string_view letters) { return !beginsAnew(letters); });
    edits_.replaceApartVal(place_.at(), place_.at(), words + (samePage ? u"\\sbknone" : u"\\sbkpage"));
    resumed_ = u"\\sbkpage" +
               textOf(around_, [](std::u16string_view letters) { return beginsAnew(letters) && letters != u"sectd"; });
}

template <typename Choose>
std::u16string SectionWordKeeper::textOf(const SectionWords& words, Choose choose) const {
    std::u16string text;
    for (const SectionWord& word : words) {
        const ControlWord read = readWord(text_, word.place.begin);
        if (choose(read.letters)) text.append(text_.substr(word.place.begin, word.place.end - word.place.begin));
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
