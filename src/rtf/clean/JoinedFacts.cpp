#include "rtf/clean/JoinedFacts.h"

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/read/RowState.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/OpenRows.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {
namespace {

bool holds(std::u16string_view text, std::u16string_view part) noexcept {
    return findText(text, part, 0, Comparison::binary) != text.npos;
}

std::size_t count(std::u16string_view text, std::u16string_view sought) noexcept {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = findText(text, sought, at, Comparison::binary)) != text.npos; ++at) ++found;
    return found;
}

bool pairsEveryMarker(std::u16string_view text, bool tolerant) {
    const std::size_t starts = count(text, startTableMarker);
    return starts == count(text, endTableMarker) && findMarkerPairs(text, tolerant).size() == 2 * starts;
}

// Whether the last paragraph before the index is in a table.
bool endsInRow(std::u16string_view text, std::size_t end) {
    RowState row;
    for (RtfReader reader(text, 0, end, true); reader.next();) row.take(reader, reader.depth());
    return row.inRow();
}

bool hasSyntax(std::u16string_view text) noexcept {
    return text.find_first_of(u"\\{}") != text.npos;
}

}  // namespace

void JoinedFacts::noteHost(std::u16string_view text, TextRange document) {
    noteText(text);
    const std::size_t end = document.end - 1;
    if (!obstacle_.empty()) return;
    if (hasSyntax(text.substr(0, document.begin)) || hasSyntax(text.substr(document.end))) {
        obstacle_ = u"has more than one document";
    } else if (endsInRow(text, end)) {
        obstacle_ = u"ends in a table row";
    }
}

void JoinedFacts::note(std::u16string_view document) {
    lifted_.exist = true;
    noteText(document);
}

void JoinedFacts::noteText(std::u16string_view text) {
    isVersionOne_ = isVersionOne_ || RtfSearch(text).find(u"\\rtf1", 0) != text.npos;
    holdsTag_ = holdsTag_ || findText(text, u"<KV:", 0, Comparison::text) != text.npos;
    facing_ = facing_ || RtfSearch(text).findWord(u"\\facingp") != text.npos;
    noteUnits(text);
    const auto groups = groupsOfSingleDocument(text, tolerant_);
    if (!groups) {
        obstacle_ = u"holds another document";
        return;
    }
    groups_.add(*groups);
    if (tolerant_) lifted_.note(text, *groups);
    if (obstacle_.empty()) obstacle_ = obstacleIn(text, *groups);
}

void JoinedFacts::noteUnits(std::u16string_view text) {
    constexpr char16_t first = 0xE000;
    for (const char16_t unit : text) {
        if (unit >= first && highUnits_.find(unit) == highUnits_.npos) highUnits_ += unit;
    }
}

// Exact cleaning and a reader of RTF disagree about braces after "\\", and about those in binary data.
std::u16string_view JoinedFacts::obstacleIn(std::u16string_view text, GroupSet groups) const {
    if (groups.has(Group::mergePageBreak)) return u"holds a page break between joined documents";
    if (groups.has(Group::section)) return u"holds a section marker";
    if (RtfSearch(text).findWord(u"\\bin") != text.npos) return u"holds binary data";
    if (!tolerant_ && (holds(text, u"\\\\{") || holds(text, u"\\\\}"))) return u"has a brace after a backslash";
    if (groups.has(Group::generator) && holds(text, u"\\{\\*\\generator")) return u"names a generator in its text";
    if (groups.has(Group::tableMarker) && !pairsEveryMarker(text, tolerant_)) return u"has a single table marker";
    if (leavesRowOpen(text)) return u"has a table row without its end";
    return {};
}

}  // namespace velmor
