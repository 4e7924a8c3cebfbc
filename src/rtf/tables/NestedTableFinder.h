#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"

namespace velmor {

// Finds the nested tables in an outer table, by the levels of its paragraphs. It gets the table's words and
// braces from left to right. Time is linear, memory grows with the depth of nesting only.
//
// A nested table has a first row "\nesttableprops", "\trowd" and "\irow0"; it begins with the first of the unbroken run
// of paragraphs of its level or deeper, but after the table that ended before it on its level, and ends after the brace
// of its row that has "\lastrow". Without one it is not marked.
class NestedTableFinder {
public:
    // Appends to `found`, inner tables before outer ones.
    NestedTableFinder(std::u16string_view text, std::vector<TextRange>& found) noexcept : text_(text), found_(found) {}

    // A new range begins; tables that began before it are forgotten.
    void begin(std::size_t index);

    void take(const ControlWord& word, Word meaning);
    void openBrace() noexcept { ++depth_; }
    void closeBrace(std::size_t index);

    // Whether braces matter at this place; others may be omitted.
    bool needsBraces() const noexcept { return inRow_ || skipping_; }

private:
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    // An unbroken run of paragraphs of `level` or deeper.
    struct Run {
        Level level;
        std::size_t begin;
        std::size_t table = none;  // the begin of the level's next table; none after a table, until a paragraph follows
        bool firstRow = false;     // the table's first row was seen
    };

    void endParagraph(Level level, std::size_t next);
    void finishRow(std::size_t next);
    void extendRuns(Level level);

    std::u16string_view text_;
    std::vector<TextRange>& found_;
    std::vector<Run> runs_;
    std::size_t paragraph_ = 0;  // the begin of the current paragraph
    TableLevel level_;
    std::ptrdiff_t depth_ = 0;  // of the given braces

    bool inRow_ = false;  // in the properties of a nested row, which end before the paragraph does
    bool rowIsFirst_ = false;
    bool rowIsLast_ = false;
    std::ptrdiff_t rowDepth_ = 0;

    bool skipping_ = false;  // a group that only readers without nested tables read
    std::ptrdiff_t skipDepth_ = 0;
    std::size_t skipStart_ = 0;
};

}  // namespace velmor
