#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"

namespace velmor {

class DiagnosticList;
class TemplateFile;

// What is wrong with the braces or the tables of an RTF source.
struct RtfFault {
    enum class Kind : std::uint8_t { tooDeep, neverClosed, endsEarly, wrongCells, noDefinition, noRow };

    Kind kind;
    TextRange range;
    std::int64_t cells = 0;  // of the row
    std::int64_t columns = 0;
};

// Finds braces that do not match, and rows whose cells do not agree with their definition. It is told the braces and
// words of a document from its beginning, as the tolerant reader finds them, and pays no attention to what follows the
// document's end.
class RtfCheck {
public:
    explicit RtfCheck(std::u16string_view source) : source_(source) {}

    // `meaning` of the first word of the group.
    void open(std::size_t brace, WordMeaning meaning) {
        if (isEnded_) return;
        open_.push_back(brace);
        if (open_.size() > deepestGroup && !std::exchange(isTooDeep_, true)) {
            faults_.push_back({RtfFault::Kind::tooDeep, {brace, brace + 1}});
        }
        if (nested_ == 0 && meaning.word == Word::nesttableprops) {
            nested_ = open_.size();
            nestedDefinition_ = {};
        }
        if (!meaning.is(WordTrait::apartGroup)) return;
        states_.emplace_back();
        states_.back().depth = open_.size();
    }

    void close(std::size_t brace) {
        if (isEnded_) return;
        if (nested_ == open_.size()) nested_ = 0;
        if (states_.back().depth == open_.size()) {
            endTables();
            states_.pop_back();
        }
        open_.pop_back();
        isEnded_ = open_.empty();
        if (!isEnded_) return;
        const std::size_t next = source_.find_first_not_of(std::u16string_view(u" \t\r\n\0", 5), brace + 1);
        if (next != source_.npos) faults_.push_back({RtfFault::Kind::endsEarly, {brace, brace + 1}});
    }

    // A word that TableLevel takes, or \\cellx; it ignores others.
    void takeWord(const ControlWord& word, Word meaning) {
        if (isEnded_) return;
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
        Cells& cells = state.cells[*level];
        ++cells.count;
        cells.last = {word.begin, word.end};
    }

    // The source has ended. Called once.
    std::vector<RtfFault> faults() {
        endTables();
        if (!open_.empty()) faults_.push_back({RtfFault::Kind::neverClosed, {open_.back(), open_.back() + 1}});
        return std::move(faults_);
    }

private:
    static constexpr std::size_t deepestGroup = 1000;

    // The columns that a definition names.
    struct RowDefinition {
        bool isThere = false;
        std::int64_t columns = 0;

        void take(Word word) noexcept {
            if (word == Word::trowd) *this = {true, 0};
            if (word == Word::cellx) ++columns;
        }
    };
    struct Cells {
        std::int64_t count = 0;
        TextRange last;
    };
    // The tables of the page text, or of a group with paragraphs of its own.
    struct TableState {
        std::size_t depth = 0;  // of the group
        TableLevel level;
        RowDefinition definition;
        std::map<Level, Cells> cells;  // that no row has ended yet
    };

    void endRow(const ControlWord& word, Level level, const RowDefinition& definition) {
        std::map<Level, Cells>& all = states_.back().cells;
        const std::int64_t count = all[level].count;
        all.erase(all.lower_bound(level), all.end());
        if (count == definition.columns || count == 0) return;
        const auto kind = definition.isThere ? RtfFault::Kind::wrongCells : RtfFault::Kind::noDefinition;
        faults_.push_back({kind, {word.begin, word.end}, count, definition.columns});
    }

    // Cells without a row.
    void endTables() {
        for (const auto& [level, cells] : states_.back().cells) faults_.push_back({RtfFault::Kind::noRow, cells.last});
    }

    std::u16string_view source_;
    std::vector<RtfFault> faults_;
    std::vector<std::size_t> open_;  // braces
    bool isEnded_ = false;
    bool isTooDeep_ = false;
    std::vector<TableState> states_{1};
    std::size_t nested_ = 0;  // the depth of the group of a nested row's definition; 0 outside one
    RowDefinition nestedDefinition_;
};

// Reports the faults of a file.
void reportRtf(const TemplateFile& file, DiagnosticList& found);

}  // namespace velmor
