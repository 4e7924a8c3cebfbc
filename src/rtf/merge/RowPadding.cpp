#include "rtf/merge/RowPadding.h"

#include <algorithm>

#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

bool hasTableStyle(const std::u16string& text, GroupSet groups) {
    return groups.has(Group::styleSheet) && findText(text, u"\\tsrowd", 0, Comparison::binary) != text.npos;
}

bool saysPadding(std::u16string_view text, std::size_t row) {
    for (WordRun run(text, row); run.next() && run.word().letters != u"cellx";) {
        if (run.word().letters == u"trgaph" || run.word().letters.starts_with(u"trpadd")) return true;
    }
    return false;
}

void padFirstRow(std::u16string& text) {
    constexpr std::u16string_view row = u"\\trowd";
    const std::size_t at = RtfSearch(text, true).findWord(row);
    if (at != text.npos && !saysPadding(text, at + row.size())) text.insert(at + row.size(), u"\\trpaddl0\\trpaddr0");
}

}  // namespace

void keepRowPadding(std::u16string& host, TableCollection& tables) {
    auto& documents = tables.documents();
    const auto brings = [](const auto& document) { return hasTableStyle(document.text, document.groups); };
    const bool hostBrings = !documents.empty() && hasTableStyle(host, tables.hostGroups());
    if (!hostBrings && std::none_of(documents.begin(), documents.end(), brings)) return;
    if (!hostBrings) padFirstRow(host);
    for (auto& document : documents) {
        if (!brings(document)) padFirstRow(document.text);
    }
}

}  // namespace velmor
