#include "check/RtfCheck.h"

#include <map>
#include <utility>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"
#include "rtf/read/WordTable.h"

namespace velmor {

namespace {

constexpr std::size_t deepestGroup = 1000;

// The columns that a definition names.
struct RowDefinition {
    bool isThere = false;
    std::int64_t columns = 0;

    void take(Word word) noexcept {
        if (word == Word::trowd) *this = {true, 0};
        if (word == Word::cellx) ++columns;
    }
};

// The tables of the page text, or of a group with paragraphs of its own.
struct TableState {
    struct Cells {
        std::int64_t count = 0;
        ControlWord last;
    };

    std::size_t depth = 0;  // of the group
    TableLevel level;
    RowDefinition definition;
    std::map<Level, Cells> cells;  // that no row has ended yet
};

class RtfCheck {
public:
    RtfCheck(const TemplateFile& file, DiagnosticList& found) : file_(file), found_(found) {}

    void run();

private:
    void open(std::size_t brace);
    void close(std::size_t brace);
    void takeWord(const ControlWord& word);
    void endRow(const ControlWord& word, Level level, const RowDefinition& definition);
    void endTables();
    void report(DiagnosticCode code, TextRange range, std::u16string message) {
        found_.addInSource(code, file_, range, std::move(message));
    }

    const TemplateFile& file_;
    DiagnosticList& found_;
    std::vector<std::size_t> open_;  // braces
    bool isEnded_ = false;
    bool isTooDeep_ = false;
    std::vector<TableState> states_{1};
    std::size_t nested_ = 0;  // the depth of the group of a nested row's definition; 0 outside one
    RowDefinition nestedDefinition_;
};

void RtfCheck::run() {
    RtfReader reader(file_.source(), 0, file_.source().size(), true);
    while (!isEnded_ && reader.next()) {
        if (reader.opens()) {
            open(reader.position());
        } else if (reader.closes()) {
            close(reader.position());
        } else {
            takeWord(reader.word());
        }
    }
    endTables();
    if (open_.empty()) return;
    report(DiagnosticCode::damagedGroups, {open_.back(), open_.back() + 1},
           u"the group that begins here is never closed");
}

void RtfCheck::open(std::size_t brace) {
    open_.push_back(brace);
    if (open_.size() > deepestGroup && !std::exchange(isTooDeep_, true)) {
        report(DiagnosticCode::damagedGroups, {brace, brace + 1}, u"groups nest deeper than 1000 levels");
    }
    const WordMeaning meaning = meaningOf(readOpening(file_.source(), brace).letters);
    if (nested_ == 0 && meaning.word == Word::nesttableprops) {
        nested_ = open_.size();
        nestedDefinition_ = {};
    }
    if (!meaning.is(WordTrait::apartGroup)) return;
    states_.emplace_back();
    states_.back().depth = open_.size();
}

void RtfCheck::close(std::size_t brace) {
    if (nested_ == open_.size()) nested_ = 0;
    if (states_.back().depth == open_.size()) {
        endTables();
        states_.pop_back();
    }
    open_.pop_back();
    isEnded_ = open_.empty();
    if (!isEnded_) return;
    const std::size_t next = file_.source().find_first_not_of(std::u16string_view(u" \t\r\n\0", 5), brace + 1);
    if (next == file_.source().npos) return;
    report(DiagnosticCode::damagedGroups, {brace, brace + 1}, u"this brace ends the document, and text follows");
}

void RtfCheck::takeWord(const ControlWord& word) {
    static const WordSet set({}, {Word::pard, Word::intbl, Word::itap, Word::trowd, Word::cellx, Word::cell, Word::row,
                                  Word::nestcell, Word::nestrow});
    if (!set.mayHold(file_.source(), word.begin)) return;
    const Word meaning = meaningOf(word.letters).word;
    TableState& state = states_.back();
    if (nested_ != 0) {
        nestedDefinition_.take(meaning);
        if (meaning == Word::nestrow) endRow(word, state.level.nestedRow(), nestedDefinition_);
        return;
    }
    state.definition.take(meaning);
    const std::optional<Level> level = state.level.take(word, meaning);
    if (meaning == Word::row) endRow(word, 1, state.definition);
    if (meaning != Word::cell && meaning != Word::nestcell) return;
    TableState::Cells& cells = state.cells[*level];
    ++cells.count;
    cells.last = word;
}

void RtfCheck::endRow(const ControlWord& word, Level level, const RowDefinition& definition) {
    std::map<Level, TableState::Cells>& all = states_.back().cells;
    const std::int64_t count = all[level].count;
    all.erase(all.lower_bound(level), all.end());
    if (count == definition.columns || count == 0) return;
    const std::u16string what =
        definition.isThere
            ? u"the row has " + decimal(count) + u" cells, but its definition has " + decimal(definition.columns)
            : std::u16string(u"the row has no definition");
    report(DiagnosticCode::damagedTable, {word.begin, word.end}, what);
}

// Cells without a row.
void RtfCheck::endTables() {
    for (const auto& [level, cells] : states_.back().cells) {
        report(DiagnosticCode::damagedTable, {cells.last.begin, cells.last.end}, u"no row ends after this cell");
    }
}

}  // namespace

void checkRtf(const TemplateFile& file, DiagnosticList& found) {
    if (documentStandsAt(file.source(), 0)) RtfCheck(file, found).run();
}

}  // namespace velmor
