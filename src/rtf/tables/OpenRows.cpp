#include "rtf/tables/OpenRows.h"

#include <cstddef>
#include <utility>
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
        return isLost_ || texts_.front().row || pairs_ != 0;
    }

private:
    // A text of paragraphs, or of the pair of table markers that is open in it.
    struct Text {
        std::size_t depth = 0;
        bool row = false;            // is open
        std::vector<bool> around{};  // the same of the rows around its pairs
    };

    // The row of a nested table belongs to the row around it, although it is in a group of its own.
    void openGroup() {
        const bool isStart = standsAt(reader_.text(), reader_.position(), startTableMarker);
        if (isStart || standsAt(reader_.text(), reader_.position(), endTableMarker)) takeMarker(isStart);
        const GroupOpening opening = readOpening(reader_.text(), reader_.position());
        const WordMeaning meaning = meaningOf(opening.letters);
        const bool isApart = opening.ignorable || meaning.is(WordTrait::hiddenGroup) ||
                             meaning.is(WordTrait::shownGroup) || meaning.is(WordTrait::apartGroup);
        if (isApart && meaning.word != Word::nesttableprops) texts_.push_back({reader_.depth()});
    }

    void closeGroup() {
        if (texts_.back().depth <= reader_.depth()) return;
        isLost_ = texts_.back().row || !texts_.back().around.empty();
        texts_.pop_back();
    }

    void takeMarker(bool isStart) {
        Text& text = texts_.back();
        if (isStart) {
            ++pairs_;
            text.around.push_back(std::exchange(text.row, false));
        } else if (!text.around.empty()) {
            --pairs_;
            text.row = text.row || text.around.back();
            text.around.pop_back();
        } else {
            isLost_ = pairs_ != 0;
        }
    }

    void takeWord() {
        const ControlWord word = reader_.word();
        if (word.letters == u"row") {
            texts_.back().row = false;
        } else if (word.letters == u"cell" || word.letters.starts_with(u"trowd")) {
            texts_.back().row = true;
        } else if (word.letters.starts_with(u"row")) {
            isLost_ = true;  // some stages take it for a \row
        }
    }

    RtfReader reader_;
    std::vector<Text> texts_{{}};  // that are open
    std::size_t pairs_ = 0;        // that are open
    bool isLost_ = false;          // a row stays open
};

}  // namespace

bool leavesRowOpen(std::u16string_view document) {
    const auto holds = [&](std::u16string_view word) {
        return findText(document, word, 0, Comparison::binary) != document.npos;
    };
    return (holds(u"\\trowd") || holds(u"\\cell")) && RowWalk(document).leavesRowOpen();
}

}  // namespace velmor
