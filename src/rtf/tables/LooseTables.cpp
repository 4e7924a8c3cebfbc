#include "rtf/tables/LooseTables.h"

#include <string_view>
#include <vector>

#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/TableMarkers.h"
#include "rtf/tables/TableWords.h"
#include "text/Compare.h"

namespace velmor {
namespace {

enum class Kind { document, pair, apart };

// A run of paragraphs of a level or deeper.
struct LooseRun {
    Level level;
    std::size_t begin;
    std::size_t end = 0;  // of the last row; 0 without one
};

// A text with paragraphs of its own: a document, the text between two markers, a footnote.
struct Story {
    Kind kind = Kind::document;
    std::size_t depth = 0;      // of the braces
    bool inTable = false;       // a document in a table
    bool inRow = false;         // of the story around it
    bool first = true;          // the first paragraph has not begun; `paragraph` is the begin of the story
    std::size_t paragraph = 0;  // the begin of the current paragraph
    TableLevel level{};
    bool hasTables = false;
    bool holdsTables = false;         // of documents, in its current table
    std::vector<LooseRun> runs{};     // each deeper than the one before
    std::vector<TextRange> tables{};  // from the current outer one, inner ones first

    bool isInRow() const noexcept { return level.rowBegun || level.paragraph > 0; }
};

class LooseTableFinder {
public:
    LooseTableFinder(std::u16string_view text, bool tolerant, std::vector<TextRange>& found)
        : text_(text), tolerant_(tolerant), found_(found), reader_(text, 0, 0, true) {
        open(Kind::apart, 0);
    }

    void find(const std::vector<TableMarker>& markers) {
        for (const TableMarker& marker : markers) {
            readUpTo(marker.begin);
            marker.isStart ? enterPair(marker) : leavePair(marker);
        }
        readUpTo(text_.size());
        while (!stories_.empty()) close();
    }

private:
    Story& story() noexcept { return stories_.back(); }

    // ---- Stories

    void readUpTo(std::size_t limit) {
        reader_.limitTo(limit);
        while (reader_.next()) {
            if (reader_.opens()) {
                openBrace(reader_.position());
            } else if (reader_.closes()) {
                closeGroups();
            } else if (tables::levelWords.mayHold(text_, reader_.position())) {
                take(reader_.word());
            }
        }
    }

    void openBrace(std::size_t index) {
        if (documentStandsAt(text_, index)) {
            open(Kind::document, readWord(text_, index + 1).end);
        } else if (const std::size_t word = tables::firstWordOfApartGroup(text_, index)) {
            open(Kind::apart, word);
        }
    }

    void closeGroups() {
        while (stories_.size() > 1 && story().kind != Kind::pair && story().depth > reader_.depth()) close();
    }

    void enterPair(const TableMarker& marker) {
        // Outside of a row the pair is a table of the story's own level.
        if (!story().isInRow()) endTable();
        open(Kind::pair, marker.end);
        reader_.goOnAt(marker.end);
    }

    void leavePair(const TableMarker& marker) {
        while (story().kind != Kind::pair) close();
        const bool inRow = story().inRow;
        close();
        closeGroups();
        if (!inRow) story().paragraph = skipClosingBraces(text_, marker.end);
        reader_.goOnAt(marker.end);
    }

    void open(Kind kind, std::size_t begin) {
        Story opened{.kind = kind, .depth = reader_.depth(), .paragraph = begin};
        if (kind != Kind::apart) {
            beginParagraph(begin);
            opened.inRow = story().isInRow();
            opened.inTable = story().inTable || story().kind == Kind::pair || (tolerant_ && opened.inRow);
        }
        stories_.push_back(std::move(opened));
    }

    void close() {
        endTable();
        const Story closed = std::move(stories_.back());
        stories_.pop_back();
        if (closed.kind == Kind::apart) return;
        const bool hasTables = closed.hasTables || closed.kind == Kind::pair;
        story().hasTables |= hasTables;
        story().holdsTables |= hasTables && closed.inRow;
    }

    // ---- Words

    void take(const ControlWord& word) {
        const WordMeaning known = meaningOf(word.letters);
        if (!tables::levelWords.holds(known) || known.is(WordTrait::apartGroup)) return;
        const Word meaning = known.word;
        if (meaning == Word::trowd && tables::isNestedDefinition(text_, word.begin)) return;
        beginParagraph(word.begin);
        if (const auto level = story().level.take(word, meaning)) endParagraph(*level, word);
        if (meaning == Word::cell) story().level.rowBegun = true;  // its definition may follow
        if (meaning == Word::row || meaning == Word::nestrow) endRow(word, meaning == Word::nestrow);
    }

    void endRow(const ControlWord& word, bool isNested) {
        std::size_t end = endWithBlank(text_, word);
        if (isNested) {
            const std::size_t brace = skipWhiteSpace(text_, end);
            if (standsAt(text_, brace, u"}")) end = brace + 1;
        } else {
            story().level = {};
        }
        if (!story().runs.empty()) story().runs.back().end = end;
    }

    // ---- Paragraphs

    // The text before the first paragraph of a document is its header.
    void beginParagraph(std::size_t index) {
        Story& in = story();
        if (!in.first) return;
        in.first = false;
        if (in.kind == Kind::document) in.paragraph += firstShown(text_.substr(in.paragraph, index - in.paragraph));
    }

    void endParagraph(Level level, const ControlWord& word) {
        if (level == 0) {
            endTable();
        } else {
            tables::continueRuns(story().runs, level, story().paragraph, [&](const LooseRun& run) { endRun(run); });
        }
        story().paragraph = skipClosingBraces(text_, endWithBlank(text_, word));
    }

    void endRun(const LooseRun& run) {
        if (run.end == 0) return;
        story().tables.push_back({run.begin, run.end});
        story().hasTables = true;
    }

    // The outermost table of a pair has its markers.
    void endTable() {
        Story& in = story();
        const std::size_t own = in.kind == Kind::pair ? 1 : 0;
        for (; in.runs.size() > own; in.runs.pop_back()) endRun(in.runs.back());
        in.runs.clear();
        if (in.kind == Kind::pair || in.inTable || (tolerant_ && in.holdsTables)) {
            found_.insert(found_.end(), in.tables.begin(), in.tables.end());
        }
        in.tables.clear();
        in.holdsTables = false;
    }

    std::u16string_view text_;
    bool tolerant_;
    std::vector<TextRange>& found_;
    RtfReader reader_;  // the data of \bin is no text in either manner
    std::vector<Story> stories_;
};

}  // namespace

bool Module1::MarkLooseTables(std::u16string& psText, const CleanOptions& options, platform::Guids& guids) {
    if (findText(psText, u"row", 0, Comparison::binary) == std::u16string_view::npos) return false;
    const std::vector<TableMarker> markers = findMarkerPairs(psText, options.tolerant);
    if (markers.empty() && !options.tolerant) return false;
    std::vector<TextRange> tables;
    LooseTableFinder(psText, options.tolerant, tables).find(markers);
    TextEdits edits;
    insertTableMarkers(tables, guids, edits);
    edits.apply(psText);
    return !tables.empty();
}

}  // namespace velmor
