#include "rtf/edit/EmptyParagraphs.h"

#include <algorithm>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

// Walks an RTF text and looks at its paragraphs.
class ParagraphWalk {
public:
    // Without edits it only finds whether the text shows something.
    ParagraphWalk(std::u16string_view text, TextEdits* edits) : text_(text), edits_(edits), flows_(1) {}

    // Ends early where the text shows something if there are no edits.
    bool showsSomething() {
        while (at_ < text_.size() && (edits_ != nullptr || !shows_)) step();
        while (!flows_.empty()) endFlow();
        return shows_;
    }

private:
    // Paragraphs that follow each other: those of the page text, of a header, of a footnote.
    struct Flow {
        std::vector<TextRange> blanks;  // of the current paragraph: what goes with it
        std::vector<TextRange> held;    // of an empty paragraph after a table
        Word afterRow = Word::other;    // \row or \nestrow: the last paragraph that stays is the end of such a row
        bool hasMark = false;           // the current paragraph has one
        bool shows = false;             // the current paragraph shows something
    };
    struct Group {
        bool isHidden = false;
        bool isApart = false;
        std::size_t number = nowhere;  // the beginning of a group that is a list's number
    };

    Flow& flow() noexcept { return flows_.back(); }
    bool isHidden() const noexcept { return !groups_.empty() && groups_.back().isHidden; }

    void step() {
        switch (text_[at_]) {
            case emptyTag:
                return takeMark();
            case u'{':
                return openGroup();
            case u'}':
                return closeGroup();
            case u'\\':
                return takeBackslash();
            case u' ':
            case u'\t':
                return takeBlank(at_ + 1);
            case u'\r':
            case u'\n':
                break;
            default:
                show();
        }
        ++at_;
    }

    void show() noexcept {
        if (!isHidden()) flow().shows = shows_ = true;
    }

    void takeMark() {
        if (!isHidden()) flow().hasMark = true;
        if (edits_ != nullptr) edits_->replace(at_, at_ + 1, {});
        ++at_;
    }

    void takeBlank(std::size_t end) {
        if (!isHidden() && !flow().shows) flow().blanks.push_back({at_, end});
        at_ = end;
    }

    void openGroup() {
        const GroupOpening opening = readOpening(text_, at_);
        const WordMeaning meaning = meaningOf(opening.letters);
        if (meaning.is(WordTrait::shownGroup) || meaning.is(WordTrait::anchoredGroup)) show();
        Group group;
        group.isApart = meaning.is(WordTrait::apartGroup);
        group.isHidden = !group.isApart && (isHidden() || (opening.ignorable && !meaning.is(WordTrait::shownGroup)) ||
                                            meaning.is(WordTrait::hiddenGroup) || meaning.is(WordTrait::documentGroup));
        if (meaning.is(WordTrait::numberGroup) && !isHidden()) group.number = at_;
        if (group.isApart) flows_.emplace_back();
        groups_.push_back(group);
        ++at_;
    }

    void closeGroup() {
        ++at_;
        if (groups_.empty()) return;
        const Group group = groups_.back();
        groups_.pop_back();
        if (group.isApart) endFlow();
        if (group.number != nowhere) flow().blanks.push_back({group.number, at_});
    }

    void takeBackslash() {
        const ControlWord word = readWord(text_, at_);
        if (word.letters.empty()) {
            const char16_t symbol = at_ + 1 < text_.size() ? text_[at_ + 1] : u' ';
            if (isShownSymbol(symbol) || symbol == u'\r' || symbol == u'\n') show();
            at_ = std::min(at_ + 2, text_.size());
            return;
        }
        const std::size_t end = std::min(std::max(skipEscape(text_, at_), endWithBlank(text_, word)), text_.size());
        if (!isHidden()) takeWord(word, end);
        at_ = end;
    }

    void takeWord(const ControlWord& word, std::size_t end) {
        const WordMeaning meaning = meaningOf(word.letters);
        if (meaning.word == Word::par) {
            endParagraph(end);
        } else if (meaning.is(WordTrait::endsParagraph)) {
            endOther(meaning.word);
        } else if (meaning.word == Word::trowd || meaning.word == Word::intbl) {
            meetTable(Word::row);
        } else if (meaning.word == Word::itap && numberOf(word.number) > 1) {
            meetTable(Word::nestrow);
        } else if (word.letters == u"tab" || word.letters == u"line") {
            takeBlank(end);
        } else if (meaning.is(WordTrait::shown)) {
            show();
        }
    }

    // At the \par that ends at `end`.
    void endParagraph(std::size_t end) {
        Flow& flow = this->flow();
        if (flow.hasMark && !flow.shows) {
            flow.blanks.push_back({at_, end});
            if (flow.afterRow != Word::other && flow.held.empty()) {
                flow.held.swap(flow.blanks);
            } else {
                cut(flow.blanks);
            }
        } else {
            cut(flow.held);
            flow.afterRow = Word::other;
        }
        flow.blanks.clear();
        flow.hasMark = flow.shows = false;
    }

    // The end of a cell, a row or a section.
    void endOther(Word word) noexcept {
        shows_ = true;
        flow() = {};
        if (word == Word::row || word == Word::nestrow) flow().afterRow = word;
    }

    // With its last paragraph.
    void endFlow() {
        if (flow().shows) cut(flow().held);
        flows_.pop_back();
    }

    // A paragraph belongs to a table that has such rows.
    void meetTable(Word row) noexcept {
        if (flow().afterRow != row) return;
        flow().held.clear();
        flow().afterRow = Word::other;
    }

    void cut(std::vector<TextRange>& ranges) {
        for (const TextRange& range : ranges) {
            if (edits_ != nullptr) edits_->cut(range.begin, range.end);
        }
        ranges.clear();
    }

    std::u16string_view text_;
    TextEdits* const edits_;
    std::size_t at_ = 0;
    bool shows_ = false;
    std::vector<Flow> flows_;
    std::vector<Group> groups_;
};

void findEmptyLines(std::u16string_view lines, TextEdits& edits) {
    constexpr std::u16string_view nothing = u" \t\uFDD1";
    for (std::size_t at = lines.starts_with(u'\uFEFF') ? 1 : 0; at < lines.size();) {
        const std::size_t end = std::min(lines.find_first_of(u"\r\n", at), lines.size());
        const std::u16string_view line = lines.substr(at, end - at);
        const bool isEmpty = line.find(emptyTag) != line.npos && line.find_first_not_of(nothing) == line.npos;
        const std::size_t next = std::min(end + (standsAt(lines, end, u"\r\n") ? 2 : 1), lines.size());
        if (isEmpty) edits.replace(at, next, {});
        for (std::size_t i = line.find(emptyTag); !isEmpty && i != line.npos; i = line.find(emptyTag, i + 1)) {
            edits.replace(at + i, at + i + 1, {});
        }
        at = next;
    }
}

}  // namespace

bool showsNothing(std::u16string_view text, bool isRtf) noexcept {
    if (!isRtf) return text.find_first_not_of(u" \t\r\n\uFDD1") == text.npos;
    return !ParagraphWalk(text, nullptr).showsSomething();
}

void dropEmptyParagraphs(std::u16string& text, bool isRtf, PlaceShifts* shifts) {
    TextEdits edits;
    if (isRtf) {
        ParagraphWalk(text, &edits).showsSomething();
    } else {
        findEmptyLines(text, edits);
    }
    edits.apply(text, shifts);
}

void removeEmptyTags(std::u16string& text) noexcept {
    std::erase(text, emptyTag);
}

}  // namespace velmor
