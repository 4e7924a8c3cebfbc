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
        if (standsAt(text_, index, u"\\row")) {
            if (row_.begun && !row_.kept) edits_.insert(index, u"\\trkeep");
            row_ = {};
        } else if (standsAt(text_, index, u"\\tr")) {
            row_.kept = row_.begun && (row_.kept || standsAt(text_, index, u"\\trkeep"));
            row_.begun = row_.begun || standsAt(text_, index, u"\\trowd");
        } else if (hasMarkers_ && index >= 3 && !isEscaped(text_, index - 3)) {
            takeMarker(index - 3);
        }
    }

    bool inRow() const noexcept { return row_.begun; }
    bool areComplete() const noexcept { return !row_.begun && outer_.empty(); }

private:
    // A table in a pair of markers is separate from the row around it.
    void takeMarker(std::size_t index) {
        if (standsAt(text_, index, startTableMarker)) {
            outer_.push_back(row_);
            row_ = {};
        } else if (!outer_.empty() && standsAt(text_, index, endTableMarker)) {
            row_ = outer_.back();
            outer_.pop_back();
        }
    }

    std::u16string_view text_;
    bool hasMarkers_;
    TextEdits& edits_;
    RowToKeep row_;
    std::vector<RowToKeep> outer_;
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
