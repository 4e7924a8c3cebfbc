#include "rtf/pages/KeepSectionWords.h"

#include <algorithm>
#include <string_view>
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

    struct Document {
        std::size_t depth;  // of what it holds
        bool ownsSection;
    };

    void openGroup(std::size_t index, std::size_t host);
    void closeGroup(std::size_t index);
    void closeDocument(std::size_t index);
    void takeWord(const ControlWord& word);
    void endSection(std::size_t index);
    bool showsSince(std::size_t begin, std::size_t end) const { return showsText(text_.substr(begin, end - begin)); }

    std::u16string_view text_;
    bool mergeMode_;
    std::size_t depth_ = 0;
    std::size_t sectionBegin_;  // behind the last "\sect"
    std::vector<Document> documents_;
    std::vector<SectionWord> inForce_;  // deeper ones follow
    // Of documents that ended, in the section that is read.
    std::vector<SectionWord> ended_;
    std::size_t behind_ = 0;  // the last of them
    HoldingPlace place_;      // for their words
    TextEdits edits_;
};

void SectionWordKeeper::openGroup(std::size_t index, std::size_t host) {
    ++depth_;
    if (index == host || !documentStandsAt(text_, index)) return;
    const bool begins = mergeMode_ && !showsSince(sectionBegin_, index);
    documents_.push_back({depth_, begins});
}

void SectionWordKeeper::closeGroup(std::size_t index) {
    if (!documents_.empty() && documents_.back().depth == depth_) closeDocument(index);
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
    behind_ = index + 1;
    place_ = HoldingPlace(behind_, depth_ - 1);
}

void SectionWordKeeper::takeWord(const ControlWord& word) {
    if (word.letters == u"sect") {
        endSection(word.begin);
        sectionBegin_ = word.end;
        for (Document& document : documents_) document.ownsSection = true;
    } else if (wordIs(WordTrait::section, word.letters)) {
        // What it resets is of no use; what groups around it say holds again behind them.
        while (word.letters == u"sectd" && !inForce_.empty() && inForce_.back().depth == depth_) inForce_.pop_back();
        inForce_.push_back({{word.begin, word.end}, depth_});
    }
}

void SectionWordKeeper::endSection(std::size_t index) {
    if (!ended_.empty() && !showsSince(behind_, index)) {
        std::u16string words;
        for (const SectionWord& word : ended_)
            words += text_.substr(word.place.begin, word.place.end - word.place.begin);
        edits_.replaceApartVal(place_.at(), place_.at(), std::move(words));
    }
    ended_.clear();
}

}  // namespace

void Module1::KeepSectionWords(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument || findText(psText, u"\\sect", host, Comparison::binary) == psText.npos) return;
    SectionWordKeeper(psText, host, options.mergeMode).edits().apply(psText);
}

}  // namespace velmor
