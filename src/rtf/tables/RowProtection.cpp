#include "rtf/tables/RowProtection.h"

#include <string_view>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t nowhere = std::u16string_view::npos;

std::size_t findWord(std::u16string_view text, std::u16string_view word, std::size_t from) noexcept {
    while ((from = findText(text, word, from, Comparison::binary)) != nowhere && isEscaped(text, from)) ++from;
    return from;
}

// Row by row, for a text whose rows do not lie in one another.
void protectRows(std::u16string_view text, TextEdits& edits) {
    for (std::size_t at = 0; (at = findWord(text, u"\\trowd", at)) != nowhere;) {
        const std::size_t row = findWord(text, u"\\row", at);
        if (row == nowhere) return;
        const std::u16string_view definition = text.substr(0, row);
        if (findWord(definition, u"\\trkeep", at) == nowhere) edits.insert(row, u"\\trkeep");
        at = row + 1;
    }
}

struct Row {
    bool begun = false;
    bool kept = false;
};

// Takes the words and marker groups of a text from left to right.
class RowReader {
public:
    RowReader(std::u16string_view text, TextEdits& edits) : text_(text), edits_(edits) {}

    void take(std::size_t index) {
        if (standsAt(text_, index, u"\\row")) {
            if (row_.begun && !row_.kept) edits_.insert(index, u"\\trkeep");
            row_ = {};
        } else if (standsAt(text_, index, u"\\tr")) {
            row_.kept = row_.begun && (row_.kept || standsAt(text_, index, u"\\trkeep"));
            row_.begun = row_.begun || standsAt(text_, index, u"\\trowd");
        } else if (standsAt(text_, index, startTableMarker)) {
            outer_.push_back(row_);
            row_ = {};
        } else if (!outer_.empty() && standsAt(text_, index, endTableMarker)) {
            row_ = outer_.back();
            outer_.pop_back();
        }
    }

private:
    std::u16string_view text_;
    TextEdits& edits_;
    Row row_;
    std::vector<Row> outer_;
};

}  // namespace

void Module1::ProtectTableRows(std::u16string& psText, const CleanOptions& options) {
    TextEdits edits;
    if (options.tolerant && findText(psText, startTableMarker, 0, Comparison::binary) != nowhere) {
        RowReader reader(psText, edits);
        RtfReader scanner(psText, 0, psText.size());
        while (scanner.next()) reader.take(scanner.position());
    } else {
        protectRows(psText, edits);
    }
    edits.apply(psText);
}

}  // namespace velmor
