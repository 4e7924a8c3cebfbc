#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"
#include "rtf/tables/TableWords.h"

namespace velmor {

// Finds the nested tables in a part of an outer table, by the levels of its paragraphs. It gets the table's words and
// braces from left to right. Time is linear, memory grows with the depth of nesting only.
//
// A nested table has a first row "\nesttableprops", "\trowd" and "\irow0"; it begins with the first of the unbroken run
// of paragraphs of its level or deeper, but after the table that ended before it on its level, and ends after the brace
// of its row that has "\lastrow". Without one it is not marked.
class NestedTableFinder {
public:
    // The part begins at the index. Appends to `found`, inner tables before outer ones.
    NestedTableFinder(std::u16string_view text, std::size_t index, std::vector<TextRange>& found) noexcept
        : text_(text), found_(found), paragraph_(skipClosingBraces(text, index)) {}

    void take(const ControlWord& word, Word meaning) {
        if (skipStart_ != nowhere && meaning != Word::cell && meaning != Word::row) return;
        if (meaning == Word::lastrow) {
            rowIsLast_ = true;
        } else if (meaning == Word::nesttableprops) {
            inRow_ = true;
            rowDepth_ = depth_;
            rowIsFirst_ = tables::firstRowStandsAt(text_, skipWhiteSpace(text_, word.numberBegin()));
            rowIsLast_ = false;
        } else if (meaning == Word::nonesttables) {
            if (word.begin == 0 || text_[word.begin - 1] != u'{') return;
            skipDepth_ = depth_;
            skipStart_ = word.begin - 1;
        } else if (const auto level = level_.take(word, meaning)) {
            // Whatever the braces are, the properties of a row and a skipped group end before these words.
            inRow_ = false;
            skipStart_ = nowhere;
            extendRuns(*level);
            paragraph_ = skipClosingBraces(text_, skipBlank(text_, word.numberBegin()));
        }
    }

    void openBrace() noexcept { ++depth_; }

    void closeBrace(std::size_t index) {
        --depth_;
        if (skipStart_ != nowhere && depth_ < skipDepth_) {
            if (paragraph_ == skipStart_) paragraph_ = skipClosingBraces(text_, index + 1);
            skipStart_ = nowhere;
        }
        if (inRow_ && depth_ < rowDepth_) finishRow(index + 1);
    }

private:
    // An unbroken run of paragraphs of `level` or deeper.
    struct Run {
        Level level;
        std::size_t begin;
        std::size_t table = nowhere;  // the begin of its next table; nowhere between a table and the next paragraph
        bool firstRow = false;        // the table's first row was seen
    };

    void finishRow(std::size_t next) {
        inRow_ = false;
        extendRuns(level_.nestedRow());
        Run& run = runs_.back();
        run.firstRow = run.firstRow || rowIsFirst_;
        if (rowIsLast_) {
            if (run.firstRow) found_.push_back({run.table, next});
            run.firstRow = false;
            run.table = nowhere;
        }
        paragraph_ = skipClosingBraces(text_, next);
    }

    void extendRuns(Level level) {
        if (level < 2) {
            runs_.clear();
            level_.cell = 0;
            return;
        }
        const std::size_t begin = tables::continueRuns(runs_, level, paragraph_, [](const Run&) {});
        if (runs_.back().table == nowhere) runs_.back().table = begin;
    }

    std::u16string_view text_;
    std::vector<TextRange>& found_;
    std::vector<Run> runs_;
    std::size_t paragraph_;  // the begin of the current paragraph
    TableLevel level_;
    std::ptrdiff_t depth_ = 0;

    bool inRow_ = false;  // in the properties of a nested row, which end before the paragraph does
    bool rowIsFirst_ = false;
    bool rowIsLast_ = false;
    std::ptrdiff_t rowDepth_ = 0;

    std::size_t skipStart_ = nowhere;  // the begin of an open group that only readers without nested tables read
    std::ptrdiff_t skipDepth_ = 0;
};

}  // namespace velmor
