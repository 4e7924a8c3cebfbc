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

// A word with such a beginning counts as that word.
void takeRowWord(std::u16string_view text, std::size_t index, RowToKeep& row, TextEdits& edits) {
    if (standsAt(text, index, u"\\row")) {
        if (row.begun && !row.kept) edits.insert(index, u"\\trkeep");
        row = {};
    } else if (standsAt(text, index, u"\\tr")) {
        row.kept = row.begun && (row.kept || standsAt(text, index, u"\\trkeep"));
        row.begun = row.begun || standsAt(text, index, u"\\trowd");
    }
}

// A table in a pair of markers is separate from the row around it.
void takeMarker(std::u16string_view text, std::size_t index, std::vector<RowToKeep>& rows) {
    if (standsAt(text, index, startTableMarker)) {
        rows.emplace_back();
    } else if (rows.size() > 1 && standsAt(text, index, endTableMarker)) {
        rows.pop_back();
    }
}

}  // namespace

bool Module1::ProtectTableRows(std::u16string& psText, const CleanOptions& options) {
    static const WordSet rowWords({}, {Word::korvane, Word::row, Word::trowd, Word::trkeep});
    constexpr std::u16string_view definition = u"\\trowd";
    const bool hasMarkers =
        options.tolerant && findText(psText, startTableMarker, 0, Comparison::binary) != psText.npos;
    TextEdits edits;
    std::vector<RowToKeep> rows(1);  // around a pair of markers, and in it
    RtfSearch search(psText);
    RtfReader reader(psText, hasMarkers ? 0 : search.find(definition, 0), psText.size());
    while (reader.nextWord()) {
        const std::size_t index = reader.position();
        if (!rowWords.mayHold(psText, index)) continue;
        takeRowWord(psText, index, rows.back(), edits);
        if (!hasMarkers) {
            if (!rows.back().begun) reader.goOnAt(search.find(definition, index + 1));
        } else if (index >= 3 && !isEscaped(psText, index - 3)) {
            takeMarker(psText, index - 3, rows);
        }
    }
    edits.apply(psText);
    return rows.size() == 1 && !rows.back().begun;
}

}  // namespace velmor
