#include "rtf/tables/LooseTables.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/MarkerInsertion.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/TableWords.h"
#include "text/Compare.h"

namespace velmor {
namespace {

using Level = std::uint32_t;

enum class Kind : std::uint8_t { document, pair, apart };

// A run of paragraphs of a level or deeper.
struct Run {
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
    Level level = 0;
    Level cellLevel = 0;  // of the last nested cell; 0 if none follows the outer cell
    bool rowBegun = false;
    bool hasTables = false;
    bool holdsTables = false;       // of documents, in its current table
    std::vector<Run> runs;          // each deeper than the one before
    std::vector<TextRange> tables;  // from the current outer one, inner ones first

    bool isInRow() const noexcept { return rowBegun || level > 0; }
};

class LooseTableFinder {
public:
    LooseTableFinder(std::u16string_view text, bool tolerant, std::vector<TextRange>& found)
        : text_(text), tolerant_(tolerant), found_(found) {
        open(Kind::apart, 0);
    }

    void find(const std::vector<PairedMarker>& markers) {
        for (const PairedMarker& marker : markers) {
            readUpTo(marker.begin);
            marker.isStart ? enterPair(marker) : leavePair(marker);
        }
        readUpTo(text_.size());
        while (!stories_.empty()) close();
    }

private:
    Story& story() noexcept { return stories_.back(); }

    void readUpTo(std::size_t limit);
    void openBrace(std::size_t index);
    void closeGroups();
    void enterPair(const PairedMarker& marker);
    void leavePair(const PairedMarker& marker);
    void open(Kind kind, std::size_t begin);
    void close();

    bool take(std::size_t index);
    void takeTableWord(const ControlWord& word, Word meaning);
    void takeRow(const ControlWord& word);
    void takeApartText(std::size_t index);
    void beginParagraph(std::size_t index);
    void endParagraph(Level level, const ControlWord& word);
    void extendRuns(Level level);
    void endRun(const Run& run);
    void endTable();

    std::u16string_view text_;
    bool tolerant_;
    std::vector<TextRange>& found_;
    std::vector<Story> stories_;
    std::size_t depth_ = 0;
    std::size_t brace_ = 0;  // the last one that opened a group
    std::size_t at_ = 0;
};

// ---- Stories

void LooseTableFinder::readUpTo(std::size_t limit) {
    while (at_ < limit) {
        RtfReader scanner(text_, at_, limit);
        at_ = limit;
        while (scanner.next()) {
            const std::size_t index = scanner.position();
            if (text_[index] == u'{') {
                openBrace(index);
            } else if (text_[index] == u'}') {
                depth_ -= depth_ > 0;
                closeGroups();
            } else if (tables::levelWords.mayHold(text_, index) && take(index)) {
                break;
            }
        }
    }
}

void LooseTableFinder::openBrace(std::size_t index) {
    ++depth_;
    brace_ = index;
    if (documentStandsAt(text_, index)) open(Kind::document, readWord(text_, index + 1).end);
}

void LooseTableFinder::closeGroups() {
    while (stories_.size() > 1 && story().kind != Kind::pair && story().depth > depth_) close();
}

void LooseTableFinder::enterPair(const PairedMarker& marker) {
    // Outside of a row it is a table of the story's own level.
    if (!story().isInRow()) endTable();
    open(Kind::pair, marker.end);
    at_ = marker.end;
}

void LooseTableFinder::leavePair(const PairedMarker& marker) {
    while (story().kind != Kind::pair) close();
    const bool inRow = story().inRow;
    close();
    closeGroups();
    if (!inRow) story().paragraph = skipClosingBraces(text_, marker.end);
    at_ = marker.end;
}

void LooseTableFinder::open(Kind kind, std::size_t begin) {
    Story opened;
    opened.kind = kind;
    opened.depth = depth_;
    opened.paragraph = begin;
    if (!stories_.empty() && kind != Kind::apart) {
        beginParagraph(begin);
        opened.inRow = story().isInRow();
        opened.inTable = story().inTable || story().kind == Kind::pair || (tolerant_ && opened.inRow);
    }
    stories_.push_back(std::move(opened));
}

void LooseTableFinder::close() {
    endTable();
    const Story closed = std::move(stories_.back());
    stories_.pop_back();
    if (stories_.empty() || closed.kind == Kind::apart) return;
    const bool hasTables = closed.hasTables || closed.kind == Kind::pair;
    story().hasTables |= hasTables;
    story().holdsTables |= hasTables && closed.inRow;
}

// ---- Words

// True when reading continues at at_.
bool LooseTableFinder::take(std::size_t index) {
    const ControlWord word = readWord(text_, index);
    const WordMeaning meaning = meaningOf(word.letters);
    if (!tables::levelWords.holds(meaning)) return false;
    if (meaning.word == Word::bin) {
        at_ = skipEscape(text_, index);
        return true;
    }
    if (meaning.is(WordTrait::apartGroup)) {
        takeApartText(index);
    } else {
        takeTableWord(word, meaning.word);
    }
    return false;
}

void LooseTableFinder::takeTableWord(const ControlWord& word, Word meaning) {
    const bool isNested = meaning == Word::trowd && tables::isNestedDefinition(text_, word.begin);
    if (!isNested) beginParagraph(word.begin);
    Story& in = story();
    switch (meaning) {
        case Word::cell:
            in.cellLevel = 0;
            in.rowBegun = true;
            return endParagraph(1, word);
        case Word::nestcell:
            in.cellLevel = std::max(in.level, Level{2});
            return endParagraph(in.cellLevel, word);
        case Word::row:
        case Word::nestrow:
            return takeRow(word);
        case Word::trowd:
            in.rowBegun |= !isNested;
            return;
        case Word::intbl:
            in.level = std::max(in.level, Level{1});
            return;
        case Word::itap:
            in.level = tables::levelOf(word);
            return;
        case Word::pard:
            in.level = 0;
            return;
        case Word::par:
            return endParagraph(std::max(in.level, Level{in.rowBegun}), word);
        default:
            return;
    }
}

void LooseTableFinder::takeRow(const ControlWord& word) {
    Story& in = story();
    const bool isNested = word.letters == u"nestrow";
    const Level nestedLevel = in.cellLevel != 0 ? in.cellLevel : std::max(in.level, Level{2});
    endParagraph(isNested ? nestedLevel : 1, word);
    std::size_t end = word.end + standsAt(text_, word.end, u" ");
    if (isNested) {
        const std::size_t brace = skipWhiteSpace(text_, end);
        if (standsAt(text_, brace, u"}")) end = brace + 1;
    } else {
        in.rowBegun = false;
        in.level = in.cellLevel = 0;
    }
    if (!in.runs.empty()) in.runs.back().end = end;
}

void LooseTableFinder::takeApartText(std::size_t index) {
    const bool beginsGroup = index == brace_ + 1 || (index == brace_ + 3 && standsAt(text_, brace_ + 1, u"\\*"));
    if (depth_ > 0 && beginsGroup) open(Kind::apart, index);
}

// ---- Paragraphs

// The text before the first paragraph of a document is its header.
void LooseTableFinder::beginParagraph(std::size_t index) {
    Story& in = story();
    if (!in.first) return;
    in.first = false;
    if (in.kind == Kind::document) in.paragraph += firstShown(text_.substr(in.paragraph, index - in.paragraph));
}

void LooseTableFinder::endParagraph(Level level, const ControlWord& word) {
    extendRuns(level);
    story().paragraph = skipClosingBraces(text_, word.end + standsAt(text_, word.end, u" "));
}

void LooseTableFinder::extendRuns(Level level) {
    Story& in = story();
    if (level == 0) return endTable();
    std::size_t begin = in.paragraph;
    for (; !in.runs.empty() && in.runs.back().level > level; in.runs.pop_back()) {
        begin = in.runs.back().begin;
        endRun(in.runs.back());
    }
    if (in.runs.empty() || in.runs.back().level < level) in.runs.push_back({level, begin});
}

void LooseTableFinder::endRun(const Run& run) {
    if (run.end == 0) return;
    story().tables.push_back({run.begin, run.end});
    story().hasTables = true;
}

// The outermost table of a pair has its markers.
void LooseTableFinder::endTable() {
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

}  // namespace

bool Module1::MarkLooseTables(std::u16string& psText, const CleanOptions& options, platform::Guids& guids) {
    if (findText(psText, u"row", 0, Comparison::binary) == std::u16string_view::npos) return false;
    const std::vector<PairedMarker> markers = findMarkerPairs(psText, options.tolerant);
    if (markers.empty() && !options.tolerant) return false;
    MarkerInsertion changes;
    LooseTableFinder(psText, options.tolerant, changes.tables).find(markers);
    if (changes.empty()) return false;
    changes.apply(psText, guids);
    return true;
}

}  // namespace velmor
