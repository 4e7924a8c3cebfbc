#include "rtf/RowProtection.h"

#include <string_view>
#include <vector>

#include "rtf/RtfScanner.h"
#include "rtf/TableMarkers.h"
#include "rtf/TextEdits.h"
#include "text/Compare.h"

namespace velmor {
namespace {

struct Row {
    bool begun = false;
    bool kept = false;
};

// Takes the words of the text from left to right.
class RowReader {
public:
    RowReader(std::u16string_view text, TextEdits& edits) : text_(text), edits_(edits) {}

    void take(std::size_t index) { text_[index] == u'\\' ? takeWord(index) : takeBrace(index); }

private:
    void takeWord(std::size_t index) {
        if (standsAt(text_, index, u"\\row")) {
            if (row_.begun && !row_.kept) edits_.insert(index, u"\\trkeep");
            row_ = {};
        } else if (standsAt(text_, index, u"\\tr")) {
            row_.kept = row_.begun && (row_.kept || standsAt(text_, index, u"\\trkeep"));
            row_.begun = row_.begun || standsAt(text_, index, u"\\trowd");
        }
    }

    void takeBrace(std::size_t index) {
        if (standsAt(text_, index, startTableMarker)) {
            outer_.push_back(row_);
            row_ = {};
        } else if (!outer_.empty() && standsAt(text_, index, endTableMarker)) {
            row_ = outer_.back();
            outer_.pop_back();
        }
    }

    std::u16string_view text_;
    TextEdits& edits_;
    Row row_;
    std::vector<Row> outer_;
};

}  // namespace

void Module1::ProtectTableRows(std::u16string& psText, const CleanOptions& options) {
    const std::size_t first = findText(psText, u"\\trowd", 0, Comparison::binary);
    if (first == std::u16string_view::npos) return;
    TextEdits edits;
    RowReader reader(psText, edits);
    RtfScanner scanner(psText, options.tolerant ? 0 : first, psText.size());
    while (options.tolerant ? scanner.next() : scanner.nextWord()) reader.take(scanner.position());
    edits.apply(psText);
}

}  // namespace velmor
