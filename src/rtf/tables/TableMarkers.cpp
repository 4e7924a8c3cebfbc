#include "rtf/tables/TableMarkers.h"

#include <algorithm>
#include <iterator>

#include "rtf/read/Module1.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/NestedTableFinder.h"
#include "rtf/tables/RowTrimmer.h"
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
    if (before.size() >= 5 && before.substr(before.size() - 5) == u"\\cell") {
        const std::int32_t first = Module1::FindRTFWordInText(1, before, u"\\cell", Module1::binaryCompare, false);
        if (first != 0) start = static_cast<std::size_t>(first) - 1;
    }
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

// Passes the words of rows to a trimmer, except the ends. Definitions of nested rows are not theirs.
void takeRowWord(std::u16string_view text, Word word, std::size_t index, RowTrimmer& rows) {
    if (word == Word::cell) {
        rows.cell(index);
    } else if (word == Word::korvane && index >= 3 && standsAt(text, index - 3, u"{\\*")) {
        rows.marker(index);
    } else if (word == Word::trowd && !tables::isNestedDefinition(text, index)) {
        rows.definition();
    }
}

// Reads one table after the other, and collects them, inner ones before outer ones.
class TableReader {
public:
    explicit TableReader(std::u16string_view text) : text_(text), nested_(text, tables_) {}

    // The end of the table that begins at `start`; nothing when its last row is missing: then the nested tables
    // of its complete parts stay collected.
    std::size_t read(std::size_t start) {
        const std::size_t cuts = edits_.size();
        known_ = tables_.size();
        nestedTables_ = lastRows_ = 0;
        lastRowSeen_ = false;
        rows_ = {};
        nested_.begin(start);
        RtfReader reader(text_, start, text_.size());
        for (TableWord read; next(reader, read);) {
            const std::size_t index = reader.position();
            // The marker separates a definition at the begin of the table from the text before it.
            if (index == start && read.meaning == Word::trowd) rows_.definition();
            takeRowWord(text_, read.meaning, index, rows_);
            if (read.meaning == Word::lastrow) {
                lastRowSeen_ = true;
                ++lastRows_;
            } else if (read.meaning == Word::row && takeRow(start, index)) {
                return tables_.back().end;
            }
            if (reader.opens()) {
                nested_.openBrace();
            } else if (reader.closes()) {
                nested_.closeBrace(index);
            } else {
                nested_.take(read.word, read.meaning);
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
        // Tables of earlier rows precede this row's cells and do not matter.
        if (!tables_.empty()) rows_.marker(tables_.back().end);
        if (const auto cut = rows_.row(index)) edits_.replace(cut->begin, cut->end, {});
        if (!lastRowSeen_) return false;
        if (!isTableEnd()) {
            nested_.begin(index);
            return false;
        }
        const std::size_t end = index + 4;
        tables_.push_back({start, end + standsAt(text_, end, u" ")});
        return true;
    }

    // A table ends with the row of its last "\lastrow" word, unless all of these words so far belong to
    // nested tables. A part without nested tables ends it in any case.
    bool isTableEnd() {
        const std::size_t found = tables_.size() - known_;
        nestedTables_ += found;
        known_ += found;
        lastRowSeen_ = false;
        return found == 0 || lastRows_ > nestedTables_;
    }

    std::u16string_view text_;
    std::vector<TextRange> tables_;
    TextEdits edits_;
    NestedTableFinder nested_;
    RowTrimmer rows_;
    std::size_t known_ = 0;         // tables before the current part
    std::size_t nestedTables_ = 0;  // in the parts before
    std::size_t lastRows_ = 0;
    bool lastRowSeen_ = false;  // in the current part
};

// The 0-based range of two 1-based positions, within the text.
TextRange rangeWithin(const std::u16string& text, std::int32_t start, std::int32_t end) {
    const auto clamp = [&](std::int32_t position) {
        return position < 1 ? 0 : std::min(text.size(), static_cast<std::size_t>(position) - 1);
    };
    return {clamp(start), clamp(end)};
}

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
    const TextRange table = rangeWithin(value, plTableStart, plTableEnd);
    TextEdits edits;
    RowTrimmer rows;
    RtfReader reader(value, table.begin, table.end);
    for (TableWord read; next(reader, read);) {
        const std::size_t index = reader.position();
        if (read.meaning != Word::row) {
            // A cell that begins with the range precedes the table.
            if (read.meaning != Word::cell || index > table.begin) takeRowWord(value, read.meaning, index, rows);
        } else if (const auto cut = rows.row(index)) {
            edits.replace(cut->begin, cut->end, {});
        }
    }
    const std::size_t length = value.size();
    edits.apply(value);
    plTableEnd -= static_cast<std::int32_t>(length - value.size());
    value.resize(length, u' ');
}

}  // namespace velmor
