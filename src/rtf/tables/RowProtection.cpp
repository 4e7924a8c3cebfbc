#include "rtf/tables/RowProtection.h"

#include <string_view>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"

namespace velmor {
namespace {

struct RowToKeep {
    bool begun = false;
    bool kept = false;
};

// Takes the words of a text from left to right. In exact cleaning a word with such a beginning counts as that word.
class RowReader {
public:
    RowReader(std::u16string_view text, bool hasMarkers, TextEdits& edits)
        : text_(text), hasMarkers_(hasMarkers), edits_(edits) {}

    void take(std::size_t index) {
        RowToKeep& row = rows_.back();
        if (standsAt(text_, index, u"\\row")) {
            if (row.begun && !row.kept) edits_.insert(index, u"\\trkeep");
            row = {};
        } else if (standsAt(text_, index, u"\\tr")) {
            row.kept = row.begun && (row.kept || standsAt(text_, index, u"\\trkeep"));
            row.begun = row.begun || standsAt(text_, index, u"\\trowd");
        } else if (hasMarkers_ && index >= 3 && !isEscaped(text_, index - 3)) {
            takeMarker(index - 3);
        }
    }

    bool inRow() const noexcept { return rows_.back().begun; }
    bool areComplete() const noexcept { return !inRow() && rows_.size() == 1; }

private:
    // A table in a pair of markers is separate from the row around it.
    void takeMarker(std::size_t index) {
        if (standsAt(text_, index, startTableMarker)) {
            rows_.emplace_back();
        } else if (rows_.size() > 1 && standsAt(text_, index, endTableMarker)) {
            rows_.pop_back();
        }
    }

    std::u16string_view text_;
    bool hasMarkers_;
    TextEdits& edits_;
    std::vector<RowToKeep> rows_{{}};  // around a pair, and in it
};

}  // namespace

bool Module1::ProtectTableRows(std::u16string& psText, const CleanOptions& options) {
    static const WordSet rowWords({}, {Word::korvane, Word::row, Word::trowd, Word::trkeep});
    constexpr std::u16string_view definition = u"\\trowd";
    const bool hasMarkers =
        options.tolerant && findText(psText, startTableMarker, 0, Comparison::binary) != psText.npos;
    TextEdits edits;
    RowReader rows(psText, hasMarkers, edits);
    RtfSearch search(psText);
    RtfReader reader(psText, hasMarkers ? 0 : search.find(definition, 0), psText.size());
    while (reader.nextWord()) {
        if (!rowWords.mayHold(psText, reader.position())) continue;
        rows.take(reader.position());
        if (!hasMarkers && !rows.inRow()) reader.goOnAt(search.find(definition, reader.position() + 1));
    }
    edits.apply(psText);
    return rows.areComplete();
}

}  // namespace velmor
