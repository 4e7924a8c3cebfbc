#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>
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
    void open(std::size_t brace, WordMeaning meaning);
    void close(std::size_t brace);
    // A word that TableLevel takes, or \\cellx; it ignores others.
    void takeWord(const ControlWord& word, Word meaning);
    // The source has ended. Called once.
    std::vector<RtfFault> faults();

private:
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

    void endRow(const ControlWord& word, Level level, const RowDefinition& definition);
    void endTables();

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
