#include "rtf/tables/NestedTableFinder.h"

#include <algorithm>

#include "rtf/tables/TableWords.h"

namespace velmor {

void NestedTableFinder::begin(std::size_t index) {
    runs_.clear();
    paragraph_ = skipClosingBraces(text_, index);
    level_ = {};
    depth_ = 0;
    inRow_ = skipping_ = false;
}

void NestedTableFinder::take(const ControlWord& word, Word meaning) {
    if (skipping_ && meaning != Word::cell && meaning != Word::row) return;
    if (meaning == Word::lastrow) {
        rowIsLast_ = true;
    } else if (meaning == Word::nesttableprops) {
        inRow_ = true;
        rowDepth_ = depth_;
        rowIsFirst_ = tables::firstRowStandsAt(text_, skipWhiteSpace(text_, word.numberBegin()));
        rowIsLast_ = false;
    } else if (meaning == Word::nonesttables) {
        if (word.begin == 0 || text_[word.begin - 1] != u'{') return;
        skipping_ = true;
        skipDepth_ = depth_;
        skipStart_ = word.begin - 1;
    } else if (const auto level = level_.take(word, meaning)) {
        // Whatever the braces are, the properties of a row and a skipped group end before these words.
        inRow_ = skipping_ = false;
        endParagraph(*level, word.numberBegin());
    }
}

void NestedTableFinder::closeBrace(std::size_t index) {
    --depth_;
    if (skipping_ && depth_ < skipDepth_) {
        skipping_ = false;
        if (paragraph_ == skipStart_) paragraph_ = skipClosingBraces(text_, index + 1);
    }
    if (inRow_ && depth_ < rowDepth_) finishRow(index + 1);
}

void NestedTableFinder::endParagraph(Level level, std::size_t next) {
    extendRuns(level);
    paragraph_ = skipClosingBraces(text_, skipBlank(text_, next));
}

void NestedTableFinder::finishRow(std::size_t next) {
    inRow_ = false;
    extendRuns(level_.nestedRow());
    Run& run = runs_.back();
    run.firstRow = run.firstRow || rowIsFirst_;
    if (rowIsLast_) {
        if (run.firstRow) found_.push_back({run.table, next});
        run.firstRow = false;
        run.table = none;
    }
    paragraph_ = skipClosingBraces(text_, next);
}

void NestedTableFinder::extendRuns(Level level) {
    if (level < 2) {
        runs_.clear();
        level_.cell = 0;
        return;
    }
    const std::size_t begin = tables::continueRuns(runs_, level, paragraph_, [](const Run&) {});
    if (runs_.back().table == none) runs_.back().table = begin;
}

}  // namespace velmor
