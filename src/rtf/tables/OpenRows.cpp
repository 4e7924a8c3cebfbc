#include "rtf/tables/OpenRows.h"

#include <cstddef>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

const WordSet rowWords({}, {Word::cell, Word::row, Word::trowd});

class RowWalk {
public:
    explicit RowWalk(std::u16string_view text) : reader_(text, 0, text.size(), true) {}

    bool leavesRowOpen() {
        while (!isLost_ && reader_.next()) {
            if (reader_.opens()) {
                openGroup();
            } else if (reader_.closes()) {
                closeGroup();
            } else if (rowWords.mayHold(reader_.text(), reader_.position())) {
                takeWord();
            }
        }
        return isLost_ || rows_.front() || !pairs_.empty();
    }

private:
    struct Pair {
        std::size_t texts;  // of paragraphs, that are open
        bool row;           // around it
    };

    // The row of a nested table belongs to the row around it, although it is in a group of its own.
    void openGroup() {
        const bool isStart = standsAt(reader_.text(), reader_.position(), startTableMarker);
        if (isStart || standsAt(reader_.text(), reader_.position(), endTableMarker)) takeMarker(isStart);
        const GroupOpening opening = readOpening(reader_.text(), reader_.position());
        const WordMeaning meaning = meaningOf(opening.letters);
        const bool isApart = opening.ignorable || meaning.is(WordTrait::hiddenGroup) ||
                             meaning.is(WordTrait::shownGroup) || meaning.is(WordTrait::apartGroup);
        groups_.push_back(isApart && meaning.word != Word::nesttableprops);
        if (groups_.back()) rows_.push_back(false);
    }

    void closeGroup() {
        if (groups_.empty()) return;
        if (groups_.back()) {
            isLost_ = rows_.back() || (!pairs_.empty() && pairs_.back().texts == rows_.size());
            rows_.pop_back();
        }
        groups_.pop_back();
    }

    void takeMarker(bool isStart) {
        if (isStart) {
            pairs_.push_back({rows_.size(), rows_.back()});
            rows_.back() = false;
        } else if (!pairs_.empty()) {
            isLost_ = pairs_.back().texts != rows_.size();
            rows_.back() = rows_.back() || pairs_.back().row;
            pairs_.pop_back();
        }
    }

    void takeWord() {
        const ControlWord word = reader_.word();
        if (word.letters == u"row") {
            rows_.back() = false;
        } else if (word.letters == u"cell" || word.letters.starts_with(u"trowd")) {
            rows_.back() = true;
        } else if (word.letters.starts_with(u"row")) {
            isLost_ = true;  // some stages take it for a \row
        }
    }

    RtfReader reader_;
    std::vector<bool> groups_;       // whether they have paragraphs of their own
    std::vector<bool> rows_{false};  // of each open text of paragraphs: whether its row is open
    std::vector<Pair> pairs_;        // of table markers
    bool isLost_ = false;            // a row stays open
};

}  // namespace

bool leavesRowOpen(std::u16string_view document) {
    const auto holds = [&](std::u16string_view word) {
        return findText(document, word, 0, Comparison::binary) != document.npos;
    };
    return (holds(u"\\trowd") || holds(u"\\cell")) && RowWalk(document).leavesRowOpen();
}

}  // namespace velmor
