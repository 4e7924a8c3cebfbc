#include "rtf/tables/TableMarkers.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "rtf/read/Module1.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/NestedTableFinder.h"
#include "rtf/tables/TableWords.h"
#include "text/Compare.h"

namespace velmor {
namespace {

std::size_t findFirstRow(std::u16string_view text, std::size_t from) {
    RtfSearch search(text);
    while ((from = search.find(u"\\trowd", from)) != nowhere && !tables::firstRowStandsAt(text, from)) ++from;
    return from;
}

std::size_t lastWord(std::u16string_view text, std::u16string_view word) {
    const std::int32_t found = Module1::FindRTFWordInTextReverse(text, word, -1, Module1::binaryCompare, false);
    return found == 0 ? nowhere : static_cast<std::size_t>(found) - 1;
}

// The begin of the table with a first row: its cells, \intbl or \itap if these precede the row, but after the
// previous table.
std::size_t findTableStart(std::u16string_view text, std::size_t previousEnd, std::size_t row) {
    const std::u16string_view before = text.substr(previousEnd, row - previousEnd);
    std::size_t start = before.size();
    if (before.ends_with(u"\\cell")) start = std::min(start, RtfSearch(before).find(u"\\cell", 0));
    if (const std::size_t inTable = lastWord(before.substr(0, start), u"\\intbl"); inTable != nowhere) {
        const std::size_t paragraph = lastWord(before.substr(0, inTable), u"\\par");
        start = paragraph == nowhere ? inTable : paragraph;
    }
    const std::size_t level = lastWord(before.substr(0, start), u"\\itap");
    if (level != nowhere && text[previousEnd + level + 5] != u'0') start = level;
    return previousEnd + start;
}

const WordSet tableWords({}, {Word::cell, Word::itap, Word::korvane, Word::lastrow, Word::nestcell,
                              Word::nesttableprops, Word::nonesttables, Word::par, Word::pard, Word::row, Word::trowd});

struct TableWord {
    Word meaning = Word::other;
    ControlWord word;
};

// A word with such a beginning, and no other of these words, counts as that word.
constexpr std::u16string_view beginnings[] = {u"cell", u"korvane", u"lastrow", u"row", u"trowd"};

TableWord tableWord(ControlWord word) noexcept {
    const WordMeaning meaning = meaningOf(word.letters);
    if (tableWords.holds(meaning)) return {meaning.word, word};
    if (word.letters.starts_with(u"cellx")) return {};
    const auto begins = [&](std::u16string_view beginning) { return word.letters.starts_with(beginning); };
    const auto* const found = std::find_if(std::begin(beginnings), std::end(beginnings), begins);
    if (found == std::end(beginnings)) return {};
    return {meaningOf(*found).word, {word.begin, *found, {}, word.begin + 1 + found->size()}};
}

// Moves to the next brace, or word that matters; false at the end.
bool next(RtfReader& reader, TableWord& word) noexcept {
    while (reader.next()) {
        word = {};
        if (reader.opens() || reader.closes()) return true;
        if (!tableWords.mayHold(reader.text(), reader.position())) continue;
        word = tableWord(reader.word());
        if (word.meaning != Word::other) return true;
    }
    return false;
}

// Removes the text between the last cell of a row and its end, where that loses nothing. It gets the words of the rows
// from left to right.
class RowTrimmer {
public:
    RowTrimmer(std::u16string_view text, TextEdits& edits) noexcept : text_(text), edits_(edits) {}

    // A marker precedes the index, or will do so.
    void marker(std::size_t index) noexcept { row_.markerAt = std::max(row_.markerAt, index); }
    void definition() noexcept { row_.definedAfter = true; }

    void take(Word word, std::size_t index) {
        if (word == Word::cell) {
            row_.cellEnd = index + cellLength;
            row_.definedBefore = row_.definedBefore || row_.definedAfter;
            row_.definedAfter = false;
        } else if (word == Word::korvane && index >= 3 && standsAt(text_, index - 3, u"{\\*")) {
            marker(index);
        } else if (word == Word::trowd && !tables::isNestedDefinition(text_, index)) {
            definition();
        } else if (word == Word::row) {
            if (row_.isRemovable(index)) edits_.replace(row_.cellEnd, index, {});
            row_ = {};
        }
    }

private:
    static constexpr std::size_t cellLength = 5;

    struct Row {
        std::size_t cellEnd = 0;  // 0: the row has no cell yet
        std::size_t markerAt = 0;
        bool definedBefore = false;  // before the last cell
        bool definedAfter = false;

        bool isRemovable(std::size_t end) const noexcept {
            const bool onlyDefinition = definedAfter && !definedBefore;
            return cellEnd != 0 && end > cellEnd + 1 && !onlyDefinition && markerAt < cellEnd;
        }
    };

    std::u16string_view text_;
    TextEdits& edits_;
    Row row_;
};

// Reads one table after the other, and collects them, inner ones before outer ones.
class TableReader {
public:
    explicit TableReader(std::u16string_view text) : text_(text) {}

    // The end of the table that begins at `start`; nothing when its last row is missing: then the nested tables
    // of its complete parts stay collected.
    std::size_t read(std::size_t start) {
        const std::size_t cuts = edits_.size();
        first_ = known_ = tables_.size();
        lastRows_ = 0;
        lastRowSeen_ = false;
        RowTrimmer rows(text_, edits_);
        nested_.emplace(text_, start, tables_);
        RtfReader reader(text_, start, text_.size());
        for (TableWord read; next(reader, read);) {
            const std::size_t index = reader.position();
            // The marker separates a definition at the begin of the table from the text before it.
            if (index == start && read.meaning == Word::trowd) rows.definition();
            // Tables of earlier rows precede this row's cells and do not matter.
            if (read.meaning == Word::row && !tables_.empty()) rows.marker(tables_.back().end);
            rows.take(read.meaning, index);
            if (read.meaning == Word::lastrow) {
                lastRowSeen_ = true;
                ++lastRows_;
            } else if (read.meaning == Word::row && takeRow(start, index)) {
                return tables_.back().end;
            }
            if (reader.opens()) {
                nested_->openBrace();
            } else if (reader.closes()) {
                nested_->closeBrace(index);
            } else {
                nested_->take(read.word, read.meaning);
            }
        }
        edits_.truncate(cuts);
        tables_.resize(known_);
        return nowhere;
    }

    const std::vector<TextRange>& tables() const noexcept { return tables_; }
    // The removals from the rows of these tables.
    TextEdits& edits() noexcept { return edits_; }

private:
    // True when the row ends the table.
    bool takeRow(std::size_t start, std::size_t index) {
        if (!lastRowSeen_) return false;
        lastRowSeen_ = false;
        // A table ends with the row of its last "\lastrow" word, unless all of these words so far belong to
        // nested tables. A part without nested tables ends it in any case.
        const bool hasNested = tables_.size() > known_;
        known_ = tables_.size();
        if (hasNested && lastRows_ <= known_ - first_) {
            nested_.emplace(text_, index, tables_);
            return false;
        }
        const std::size_t end = index + 4;
        tables_.push_back({start, end + standsAt(text_, end, u" ")});
        return true;
    }

    std::u16string_view text_;
    std::vector<TextRange> tables_;
    TextEdits edits_;
    std::optional<NestedTableFinder> nested_;  // for the current part
    std::size_t first_ = 0;                    // tables before this one
    std::size_t known_ = 0;                    // and before the current part of it
    std::size_t lastRows_ = 0;
    bool lastRowSeen_ = false;  // in the current part
};

}  // namespace

void insertTableMarkers(const std::vector<TextRange>& tables, platform::Guids& guids, TextEdits& edits) {
    std::vector<std::u16string_view> identities;
    for (const TextRange& table : tables) {
        identities.push_back(edits.keep(guids.next().append(1, u'}')));
        edits.insert(table.end, endTableMarker);
        edits.insert(table.end, identities.back());
    }
    for (std::size_t i = tables.size(); i-- > 0;) {
        edits.insert(tables[i].begin, startTableMarker);
        edits.insert(tables[i].begin, identities[i]);
    }
}

bool addTableMarkers(std::u16string& value, platform::Guids& guids) {
    std::size_t row = findFirstRow(value, 0);
    if (row == nowhere || findText(value, startTableMarker, 0, Comparison::binary) != nowhere) return false;
    TableReader reader(value);
    for (std::size_t end = 0; row != nowhere; row = findFirstRow(value, end)) {
        end = reader.read(findTableStart(value, end, row));
        if (end == nowhere) break;
    }
    if (reader.tables().empty()) return false;
    insertTableMarkers(reader.tables(), guids, reader.edits());
    reader.edits().apply(value);
    value.resize(value.find_last_not_of(u' ') + 1);
    return true;
}

void RemoveExtraTrowd(std::u16string& value, std::int32_t& plTableStart, std::int32_t& plTableEnd) {
    const auto indexWithin = [&](std::int32_t position) {
        return position < 1 ? 0 : std::min(value.size(), static_cast<std::size_t>(position) - 1);
    };
    const std::size_t start = indexWithin(plTableStart);
    TextEdits edits;
    RowTrimmer rows(value, edits);
    RtfReader reader(value, start, indexWithin(plTableEnd));
    for (TableWord read; next(reader, read);) {
        // A cell that begins with the range precedes the table.
        if (read.meaning != Word::cell || reader.position() > start) rows.take(read.meaning, reader.position());
    }
    const std::size_t length = value.size();
    edits.apply(value);
    plTableEnd -= static_cast<std::int32_t>(length - value.size());
    value.resize(length, u' ');
}

}  // namespace velmor
