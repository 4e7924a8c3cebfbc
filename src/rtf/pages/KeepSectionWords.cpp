#include "rtf/pages/KeepSectionWords.h"

#include <algorithm>
#include <optional>
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

constexpr std::u16string_view onNewPage = u"\\sbkpage";

// A word that describes a section.
struct SectionWord {
    std::u16string_view written;
    std::size_t depth;  // of the groups around it
    WordMeaning meaning;
};
using SectionWords = std::vector<SectionWord>;

std::u16string_view lettersOf(const SectionWord& word) noexcept {
    return readWord(word.written, 0).letters;
}

std::u16string textOf(const SectionWords& words) {
    std::u16string text;
    for (const SectionWord& word : words) text += word.written;
    return text;
}

std::u16string textOf(SectionWords words, WordTrait trait) {
    std::erase_if(words, [&](const SectionWord& word) { return !word.meaning.is(trait); });
    return textOf(words);
}

// The words for the page, each with its last number.
SectionWords pageOf(const SectionWords& words) {
    SectionWords page;
    for (const SectionWord& word : words) {
        if (!word.meaning.is(WordTrait::sectionPage)) continue;
        std::erase_if(page, [&](const SectionWord& other) { return lettersOf(other) == lettersOf(word); });
        page.push_back(word);
    }
    std::ranges::sort(page, {}, &SectionWord::written);
    return page;
}

// What a page word of a section gives. The three words for the paper give it together.
std::u16string_view pageValueOf(std::u16string_view letters) noexcept {
    return letters == u"pghsxn" || letters == u"lndscpsxn" ? u"pgwsxn" : letters;
}

// Whether the words begin with those that reset all.
bool resets(const SectionWords& words) noexcept {
    return !words.empty() && words.front().meaning.word == Word::sectd;
}

// The word that says on which page or in which column the section begins.
std::u16string_view breakOf(const SectionWords& words) {
    const auto found = std::find_if(words.rbegin(), words.rend(),
                                    [](const SectionWord& word) { return word.meaning.is(WordTrait::sectionBreak); });
    return found == words.rend() ? onNewPage : found->written;
}

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
    struct Document {
        std::size_t depth;  // of what it holds
        bool ownsSection;
        bool inBody;                         // a section can end in it
        std::optional<SectionWords> page{};  // around it; absent until it is asked for
    };

    void openGroup(std::size_t index) {
        if (!documentStandsAt(text_, index)) {
            const WordMeaning first = meaningOf(readOpening(text_, index).letters);
            const bool isStory = first.is(WordTrait::hiddenGroup) || first.is(WordTrait::shownGroup);
            if (isStory && story_ == 0) story_ = depth_;
            return;
        }
        const bool begins = mergeMode_ && !showsSince(sectionBegin_, index);
        documents_.push_back({depth_, begins, !row_.inRow() && story_ == 0});
    }

    void closeGroup(std::size_t index) {
        if (!documents_.empty() && documents_.back().depth > depth_) closeDocument(index);
        if (story_ > depth_) story_ = 0;
        if (depth_ == 0) endSection(index);
        while (!inForce_.empty() && inForce_.back().depth > depth_) inForce_.pop_back();
        place_.leave({index + 1, depth_});
    }

    void closeDocument(std::size_t index) {
        const Document document = documents_.back();
        documents_.pop_back();
        if (!document.ownsSection) return;
        if (!ended_.empty() && showsSince(after_, index)) canEnd_ ? endSectionInDocument() : ended_.clear();
        const auto own = std::ranges::find_if(inForce_, [&](auto& word) { return word.depth >= document.depth; });
        if (!resets(ended_)) ended_.insert(ended_.begin(), own, inForce_.end());
        around_ = wordsAround(document);
        canEnd_ = document.inBody && !mergeMode_;
        after_ = index + 1;
        place_ = {after_, depth_};
    }

    void takeWord(const ControlWord& word) {
        const WordMeaning meaning = meaningOf(word.letters);
        if (meaning.word == Word::sect) {
            endSection(word.begin);
            sectionBegin_ = word.end;
            if (!resumed_.empty() && !wordStandsAt(text_, skipWhiteSpace(text_, word.end), u"\\sectd")) {
                edits_.replaceVal(word.end, word.end, std::exchange(resumed_, {}));
            }
            resumed_.clear();
            for (Document& document : documents_) document.ownsSection = true;
        } else if (meaning.word == Word::sectd) {
            resetSection(word, meaning);
        } else if (meaning.is(WordTrait::section)) {
            inForce_.push_back({TextRange{word.begin, word.end}.of(text_), depth_, meaning});
        }
    }

    // What \sectd resets is of no use; what groups around it say holds again after them. In a document it also resets
    // the page to that of the host's header; so the page of the host's section follows it.
    void resetSection(const ControlWord& word, WordMeaning meaning) {
        while (!inForce_.empty() && inForce_.back().depth == depth_) inForce_.pop_back();
        inForce_.push_back({TextRange{word.begin, word.end}.of(text_), depth_, meaning});
        if (mergeMode_ || documents_.empty() || !documents_.back().inBody) return;
        Document& document = documents_.back();
        if (!document.page) document.page = pageOf(wordsAround(document));
        SectionWords page = *document.page;
        for (WordRun own(text_, word.end); own.next() && own.word().letters != u"sectd";) {
            const std::u16string_view given = pageValueOf(own.word().letters);
            std::erase_if(page, [&](const SectionWord& around) { return pageValueOf(lettersOf(around)) == given; });
        }
        for (const SectionWord& around : page) inForce_.push_back({around.written, depth_, around.meaning});
        edits_.replaceVal(word.end, word.end, textOf(page));
    }

    SectionWords wordsAround(const Document& document) const {
        SectionWords words;
        for (const SectionWord& word : inForce_) {
            if (word.depth >= document.depth) break;
            words.push_back(word);
            if (word.meaning.word == Word::sectd) words.clear();
        }
        return words;
    }

    void endSection(std::size_t index) {
        if (ended_.empty()) return;
        if (!showsSince(after_, index)) {
            edits_.replaceApartVal(place_.at, place_.at, textOf(ended_));
        } else if (canEnd_) {
            endSectionInDocument();
        }
        ended_.clear();
    }

    // Text of the host follows the document in its last section. When that has another page or other columns than the
    // text around the document, it ends with the document, and the host's section goes on in a new one. Else the text
    // goes on in the document's section, which begins as it does in the document. `ended_` is then what goes on, since
    // the host may be a document itself.
    void endSectionInDocument() {
        if (!resets(ended_)) ended_.insert(ended_.begin(), around_.begin(), around_.end());
        const bool samePage = textOf(pageOf(ended_)) == textOf(pageOf(around_));
        const bool sameSection = samePage && textOf(ended_, WordTrait::columns) == textOf(around_, WordTrait::columns);
        const std::u16string_view begins = sameSection ? breakOf(ended_) : samePage ? u"\\sbknone" : onNewPage;
        ended_ = goingOn(begins);
        if (!sameSection) edits_.replaceApartVal(after_ - 1, after_ - 1, u"\\sect");
        if (sameSection && begins == breakOf(around_)) return;
        edits_.replaceApartVal(place_.at, place_.at, sameSection ? std::u16string(begins) : textOf(ended_));
        resumed_ = std::u16string(onNewPage) + textOf(around_, WordTrait::sectionStart);
    }

    // The words around the last document, in a section that begins so.
    SectionWords goingOn(std::u16string_view sectionBreak) const {
        SectionWords words{{u"\\sectd", depth_, meaningOf(u"sectd")}};
        for (const SectionWord& word : around_) {
            if (!word.meaning.is(WordTrait::sectionStart)) words.push_back(word);
        }
        words.push_back({sectionBreak, depth_, meaningOf(sectionBreak.substr(1))});
        return words;
    }

    bool showsSince(std::size_t begin, std::size_t end) const { return showsText(text_.substr(begin, end - begin)); }

    std::u16string_view text_;
    bool mergeMode_;
    std::size_t depth_ = 0;
    std::size_t sectionBegin_;  // after the last "\sect"
    std::vector<Document> documents_;
    SectionWords inForce_;  // deeper ones follow
    // Of documents that ended, in the section that is read.
    SectionWords ended_;
    SectionWords around_;     // those around the last of them
    bool canEnd_ = false;     // the section can end in the last of them
    std::u16string resumed_;  // what the next section says anew if it does not begin with "\sectd"
    RowState row_;
    std::size_t story_ = 0;  // the depth of the group that has paragraphs of its own; 0 in the body
    std::size_t after_ = 0;  // the last of them
    HoldingPlace place_;     // for their words
    TextEdits edits_;
};

}  // namespace

void Module1::KeepSectionWords(std::u16string& psText, const CleanOptions& options) {
    const std::size_t host = findHostDocument(psText);
    if (host == noDocument || findText(psText, u"\\sect", host, Comparison::binary) == psText.npos) return;
    SectionWordKeeper(psText, host, options.mergeMode).edits().apply(psText);
}

}  // namespace velmor
