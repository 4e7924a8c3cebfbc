#include "rtf/tables/NestedTableFinder.h"

#include <algorithm>

#include "rtf/tables/TableMarkers.h"

namespace velmor {
namespace {

constexpr std::uint32_t outerLevel = 1;
constexpr std::uint32_t lowestNestedLevel = 2;
constexpr std::uint32_t highestLevel = 1'000'000'000;

// Of the whole marker that stands at the index; 0 when none does.
std::size_t markerLengthAt(std::u16string_view text, std::size_t index) {
    for (const std::u16string_view marker : {startTableMarker, endTableMarker}) {
        const std::u16string_view whole = text.substr(index, marker.size() + 39);
        if (standsAt(whole, 0, marker) && whole.find_first_of(u"{}", 1) == marker.size() &&
            whole.find_first_of(u"{}", marker.size() + 1) == marker.size() + 37 &&
            standsAt(whole, marker.size() + 37, u"}}")) {
            return whole.size();
        }
    }
    return 0;
}

}  // namespace

void NestedTableFinder::begin(std::size_t index) {
    runs_.clear();
    paragraph_ = paragraphStart(index);
    level_ = outerLevel;
    cellLevel_ = 0;
    depth_ = 0;
    inRow_ = skipping_ = false;
}

void NestedTableFinder::take(TableWord word, std::size_t index) {
    if (word == TableWord::openBrace) {
        ++depth_;
    } else if (word == TableWord::closeBrace) {
        closeBrace(index);
    } else if (skipping_ && word != TableWord::cell && word != TableWord::row) {
        return;
    } else if (word == TableWord::level) {
        level_ = levelAt(index + 5);
    } else if (word == TableWord::paragraphDefaults) {
        level_ = outerLevel;
    } else if (word == TableWord::lastRow) {
        rowIsLast_ = true;
    } else if (word == TableWord::paragraphEnd) {
        inRow_ = false;
        endParagraph(level_, index + 4);
    } else if (word == TableWord::cell || word == TableWord::row) {
        // Whatever the braces say, a nested table never reaches over these.
        inRow_ = skipping_ = false;
        endParagraph(outerLevel, index + (word == TableWord::cell ? 5 : 4));
    } else if (word == TableWord::nestedCell) {
        inRow_ = false;
        cellLevel_ = std::max(level_, lowestNestedLevel);
        endParagraph(cellLevel_, index + 9);
    } else if (word == TableWord::nestedRowProperties) {
        inRow_ = true;
        rowDepth_ = depth_;
        rowIsFirst_ =
            tables::firstRowStandsAt(text_, skipWhiteSpace(text_, index + tables::nestedRowProperties.size()));
        rowIsLast_ = false;
    } else if (word == TableWord::noNestedTables && index > 0 && text_[index - 1] == u'{') {
        skipping_ = true;
        skipDepth_ = depth_;
        skipStart_ = index - 1;
    }
}

void NestedTableFinder::closeBrace(std::size_t index) {
    --depth_;
    if (skipping_ && depth_ < skipDepth_) {
        skipping_ = false;
        if (paragraph_ == skipStart_) paragraph_ = paragraphStart(index + 1);
    }
    if (inRow_ && depth_ < rowDepth_) finishRow(index + 1);
}

void NestedTableFinder::endParagraph(Level level, std::size_t next) {
    extendRuns(level);
    if (next < text_.size() && text_[next] == u' ') ++next;
    paragraph_ = paragraphStart(next);
}

// The row is of its cells' level; one without cells of the level in force.
void NestedTableFinder::finishRow(std::size_t next) {
    inRow_ = false;
    extendRuns(cellLevel_ != 0 ? cellLevel_ : std::max(level_, lowestNestedLevel));
    Run& run = runs_.back();
    run.firstRow = run.firstRow || rowIsFirst_;
    if (rowIsLast_) completeTable(run, next);
    paragraph_ = paragraphStart(next);
}

// The current paragraph continues the runs up to its level and ends the deeper ones. A run that
// begins now takes in those that it ends: they hold deeper paragraphs, without a break.
void NestedTableFinder::extendRuns(Level level) {
    if (level < lowestNestedLevel) {
        runs_.clear();
        cellLevel_ = 0;
        return;
    }
    Start start{paragraph_, 0};
    for (; !runs_.empty() && runs_.back().level > level; runs_.pop_back()) start = runs_.back().start;
    if (runs_.empty() || runs_.back().level < level) {
        runs_.push_back({level, start, start, true, false});
    } else if (!runs_.back().tableSet) {
        runs_.back().table = start;
        runs_.back().tableSet = true;
    }
}

void NestedTableFinder::completeTable(Run& run, std::size_t end) {
    if (run.firstRow) {
        if (!isMarked(run.table)) found_.push_back({run.table.index, end});
        ++run.table.tables;
        if (run.table.index == run.start.index) run.start = run.table;
    }
    run.firstRow = false;
    run.tableSet = false;
}

// Tables that begin at one place are complete from the innermost to the outermost, and their start
// markers stand in this order, from right to left.
bool NestedTableFinder::isMarked(const Start& start) const {
    const std::size_t distance = (start.tables + 1) * static_cast<std::size_t>(startTableMarkerLength);
    return distance <= start.index && standsAt(text_, start.index - distance, startTableMarker);
}

NestedTableFinder::Level NestedTableFinder::levelAt(std::size_t index) const {
    if (index < text_.size() && text_[index] == u'-') return 0;
    const std::size_t digits = index;
    Level level = 0;
    for (; index < text_.size() && text_[index] >= u'0' && text_[index] <= u'9'; ++index) {
        level = level >= highestLevel / 10 ? highestLevel : level * 10 + (text_[index] - u'0');
    }
    return index == digits ? outerLevel : level;
}

// A paragraph begins behind line breaks, and behind the braces and markers that end with, or stand
// between, the paragraph before it and itself.
std::size_t NestedTableFinder::paragraphStart(std::size_t index) const {
    while (index < text_.size()) {
        if (text_[index] == u'}' || text_[index] == u'\r' || text_[index] == u'\n') {
            ++index;
        } else if (const std::size_t length = markerLengthAt(text_, index)) {
            index += length;
        } else {
            break;
        }
    }
    return index;
}

}  // namespace velmor
