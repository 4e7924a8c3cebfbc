#include "rtf/clean/JoinDocuments.h"

#include <algorithm>
#include <utility>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/read/Module1.h"
#include "rtf/read/RowState.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/OpenRows.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor {
namespace {

constexpr std::size_t maximalLength = (std::size_t{1} << 30) - 1;

// The document of a text, with its braces. Counts braces as a reader of RTF does, also for exact cleaning.
TextRange documentIn(std::u16string_view text, const std::string& name) {
    const std::size_t begin = findHostDocument(text);
    const std::size_t end = findGroupEnd(text, begin + 1, true);
    if (end == noGroupEnd) throw Error(5, fromUtf8(name) + u" cannot be joined: its closing brace is missing");
    return {begin, end + 1};
}

std::size_t countVisible(std::u16string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char16_t unit) { return !isWhiteSpace(unit) && unit != 0; }));
}

bool holds(std::u16string_view text, std::u16string_view part) noexcept {
    return findText(text, part, 0, Comparison::binary) != text.npos;
}

bool hasSyntax(std::u16string_view text) noexcept {
    return text.find_first_of(u"\\{}") != text.npos;
}

bool pairsEveryMarker(std::u16string_view text, bool tolerant) {
    const auto count = [&](std::u16string_view marker) {
        return static_cast<std::size_t>(Module1::CountRTFWord(1, text, marker, 0, Module1::binaryCompare, false));
    };
    const std::size_t starts = count(startTableMarker);
    return starts == count(endTableMarker) && findMarkerPairs(text, tolerant).size() == 2 * starts;
}

// Whether the last paragraph before the index is in a table.
bool endsInRow(std::u16string_view text, std::size_t end) {
    RowState row;
    for (RtfReader reader(text, 0, end, true); reader.next();) row.take(reader, reader.depth());
    return row.inRow();
}

// Exact cleaning and a reader of RTF disagree about braces after "\\", and about those in binary data.
std::u16string_view obstacleIn(std::u16string_view text, GroupSet groups, bool tolerant) {
    if (groups.has(Group::mergePageBreak)) return u"holds a page break between joined documents";
    if (groups.has(Group::section)) return u"holds a section marker";
    if (RtfSearch(text).findWord(u"\\bin") != text.npos) return u"holds binary data";
    if (!tolerant && (holds(text, u"\\\\{") || holds(text, u"\\\\}"))) return u"has a brace after a backslash";
    if (groups.has(Group::generator) && holds(text, u"\\{\\*\\generator")) return u"names a generator in its text";
    if (groups.has(Group::tableMarker) && !pairsEveryMarker(text, tolerant)) return u"has a single table marker";
    if (leavesRowOpen(text)) return u"has a table row without its end";
    return {};
}

void noteUnits(std::u16string_view text, std::u16string& highUnits) {
    constexpr char16_t first = 0xE000;
    for (const char16_t unit : text) {
        if (unit >= first && highUnits.find(unit) == highUnits.npos) highUnits += unit;
    }
}

void refuse(JoinedFacts& facts, const std::string& name, std::u16string_view reason) {
    if (!reason.empty()) facts.obstacle = fromUtf8(name + " ").append(reason);
}

JoinedFacts factsOf(std::u16string_view text, bool tolerant, const std::string& name) {
    JoinedFacts facts;
    facts.documents = 1;
    facts.size = text.size();
    facts.isVersionOne = RtfSearch(text).find(u"\\rtf1", 0) != text.npos;
    facts.holdsTag = findText(text, u"<KV:", 0, Comparison::text) != text.npos;
    facts.hasFacingPages = RtfSearch(text).findWord(u"\\facingp") != text.npos;
    noteUnits(text, facts.highUnits);
    const auto groups = groupsOfSingleDocument(text, tolerant);
    if (groups) {
        facts.groups = *groups;
        if (tolerant) facts.lifted.note(text, *groups);
    }
    refuse(facts, name, groups ? obstacleIn(text, *groups, tolerant) : u"holds another document");
    return facts;
}

}  // namespace

void requireDocument(std::u16string& text, bool addVersion, const std::string& name) {
    const std::size_t document = findHostDocument(text);
    if (document == noDocument) throw Error(5, fromUtf8(name) + u" contains no RTF document");
    const std::size_t header = hostHeaderStart(text, document);
    const bool hasVersion = isDigit(text[header - 1]);
    if (addVersion && !hasVersion && header < text.size() && !isLetter(text[header]) && text[header] != u'-') {
        text.insert(header, 1, u'1');
    }
}

std::u16string joinDocuments(std::vector<std::u16string> texts, const std::vector<std::string>& names) {
    std::u16string joined = std::move(texts.front());
    const std::size_t last = documentIn(joined, names.front()).end - 1;
    const std::u16string tail = joined.substr(last);
    joined.resize(last);
    for (std::size_t i = 1; i < texts.size(); ++i) {
        const std::u16string_view document = documentIn(texts[i], names[i]).of(texts[i]);
        const std::size_t added = Module1::mergePageBreakMarker.size() + document.size();
        if (joined.size() + tail.size() + added > maximalLength) {
            throw Error(7, u"with " + fromUtf8(names[i]) + u" the joined document is too large");
        }
        joined.append(Module1::mergePageBreakMarker).append(document);
    }
    return joined += tail;
}

void JoinedFacts::add(const JoinedFacts& other) {
    documents += other.documents;
    size += other.size;
    isVersionOne = isVersionOne || other.isVersionOne;
    holdsTag = holdsTag || other.holdsTag;
    hasFacingPages = hasFacingPages || other.hasFacingPages;
    groups.add(other.groups);
    lifted.add(other.lifted);
    if (obstacle.empty()) obstacle = other.obstacle;
    noteUnits(other.highUnits, highUnits);
}

JoinableDocument::JoinableDocument(std::u16string documentText, bool tolerant, std::string documentName)
    : name(std::move(documentName)), text(std::move(documentText)) {
    requireDocument(text, true, name);
    range = documentIn(text, name);
    facts = factsOf(document(), tolerant, name);
    facts.size += Module1::mergePageBreakMarker.size();
    facts.lifted.exist = true;
    const std::u16string_view whole = text;
    countOutside = countVisible(whole.substr(0, range.begin)) + countVisible(whole.substr(range.end));
}

JoinedFacts JoinableDocument::factsOfFirst(bool tolerant) const {
    JoinedFacts first = factsOf(text, tolerant, name);
    if (!first.obstacle.empty()) return first;
    const std::u16string_view whole = text;
    if (hasSyntax(whole.substr(0, range.begin)) || hasSyntax(whole.substr(range.end))) {
        refuse(first, name, u"has more than one document");
    } else if (endsInRow(text, range.end - 1)) {
        refuse(first, name, u"ends in a table row");
    }
    return first;
}

}  // namespace velmor
