#include "rtf/merge/RowPadding.h"

#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

bool saysPadding(std::u16string_view text, std::size_t row) {
    for (WordRun run(text, row); run.next() && run.word().letters != u"cellx";) {
        if (run.word().letters == u"trgaph" || run.word().letters.starts_with(u"trpadd")) return true;
    }
    return false;
}

}  // namespace

bool bringsTableStyle(std::u16string_view text, GroupSet groups) noexcept {
    return groups.has(Group::styleSheet) && findText(text, u"\\tsrowd", 0, Comparison::binary) != text.npos;
}

void padFirstRow(std::u16string& text) {
    constexpr std::u16string_view row = u"\\trowd";
    const std::size_t at = RtfSearch(text, true).findWord(row);
    if (at != text.npos && !saysPadding(text, at + row.size())) text.insert(at + row.size(), u"\\trpaddl0\\trpaddr0");
}

}  // namespace velmor
