#include "rtf/tables/NestedTableFinder.h"

#include <algorithm>

namespace velmor {
namespace {

constexpr std::uint32_t outerLevel = 1;
constexpr std::uint32_t lowestNestedLevel = 2;

}  // namespace

void NestedTableFinder::begin(std::size_t index) {
    runs_.clear();
    paragraph_ = skipClosingBraces(text_, index);
    level_ = outerLevel;
    cellLevel_ = 0;
    depth_ = 0;
    inRow_ = skipping_ = false;
}

void NestedTableFinder::take(Word word, std::size_t index) {
    if (skipping_ && word != Word::cell && word != Word::row) return;
    switch (word) {
        case Word::itap:
            level_ = tables::levelOf(readWord(text_, index));
            return;
        case Word::pard:
            level_ = outerLevel;
            return;
        case Word::lastrow:
            rowIsLast_ = true;
            return;
        case Word::par:
            inRow_ = false;
            return endParagraph(level_, index + 4);
        case Word::cell:
        case Word::row:
            // Whatever the braces are, a nested table ends before these.
            inRow_ = skipping_ = false;
            return endParagraph(outerLevel, index + (word == Word::cell ? 5 : 4));
        case Word::nestcell:
            inRow_ = false;
            cellLevel_ = std::max(level_, lowestNestedLevel);
            return endParagraph(cellLevel_, index + 9);
        case Word::nesttableprops:
            inRow_ = true;
            rowDepth_ = depth_;
            rowIsFirst_ = tables::firstRowStandsAt(text_, skipWhiteSpace(text_, index + 15));
            rowIsLast_ = false;
            return;
        case Word::nonesttables:
            if (index == 0 || text_[index - 1] != u'{') return;
            skipping_ = true;
            skipDepth_ = depth_;
            skipStart_ = index - 1;
            return;
        default:
            return;
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

// The row has the level of its cells; without cells the level in force.
void NestedTableFinder::finishRow(std::size_t next) {
    inRow_ = false;
    extendRuns(cellLevel_ != 0 ? cellLevel_ : std::max(level_, lowestNestedLevel));
    Run& run = runs_.back();
    run.firstRow = run.firstRow || rowIsFirst_;
    if (rowIsLast_) completeTable(run, next);
    paragraph_ = skipClosingBraces(text_, next);
}

// The current paragraph continues the runs up to its level and ends the deeper ones. A run that begins now
// includes those that it ends: they are deeper paragraphs without a break.
void NestedTableFinder::extendRuns(Level level) {
    if (level < lowestNestedLevel) {
        runs_.clear();
        cellLevel_ = 0;
        return;
    }
    std::size_t begin = paragraph_;
    for (; !runs_.empty() && runs_.back().level > level; runs_.pop_back()) begin = runs_.back().begin;
    if (runs_.empty() || runs_.back().level < level) {
        runs_.push_back({level, begin, begin});
    } else if (!runs_.back().tableSet) {
        runs_.back().table = begin;
        runs_.back().tableSet = true;
    }
}

void NestedTableFinder::completeTable(Run& run, std::size_t end) {
    if (run.firstRow) found_.push_back({run.table, end});
    run.firstRow = run.tableSet = false;
}

}  // namespace velmor
