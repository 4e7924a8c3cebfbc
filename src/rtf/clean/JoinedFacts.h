#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/RowState.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/MarkerPairs.h"
#include "rtf/tables/OpenRows.h"
#include "rtf/tables/TableMarkers.h"
#include "text/Compare.h"

namespace velmor {

// What cleaning the parts of a joined text needs to know of its documents.
class JoinedFacts {
public:
    JoinedFacts() = default;  // of no document

    // Of the first document, with the text around it. Linear.
    static JoinedFacts ofHost(std::u16string_view text, TextRange document, bool tolerant) {
        JoinedFacts facts;
        facts.noteText(text, tolerant);
        if (!facts.obstacle_.empty()) return facts;
        if (hasSyntax(text.substr(0, document.begin)) || hasSyntax(text.substr(document.end))) {
            facts.obstacle_ = u"has more than one document";
        } else if (endsInRow(text, document.end - 1)) {
            facts.obstacle_ = u"ends in a table row";
        }
        return facts;
    }

    // Of a further document. Linear.
    static JoinedFacts of(std::u16string_view document, bool tolerant) {
        JoinedFacts facts;
        facts.lifted_.exist = true;
        facts.noteText(document, tolerant);
        return facts;
    }

    // Those of documents that follow. The obstacle of the first one stays.
    void add(const JoinedFacts& other) {
        isVersionOne_ = isVersionOne_ || other.isVersionOne_;
        holdsTag_ = holdsTag_ || other.holdsTag_;
        facing_ = facing_ || other.facing_;
        groups_.add(other.groups_);
        lifted_.add(other.lifted_);
        if (obstacle_.empty()) obstacle_ = other.obstacle_;
        noteUnits(other.highUnits_);
    }

    // Whether cleaning applies to the joined text.
    bool isCleanable() const noexcept { return isVersionOne_ && !holdsTag_; }
    // Why the documents cannot be cleaned in parts, as the rest of a sentence about the last one; empty if they can.
    std::u16string_view obstacle() const noexcept { return obstacle_; }

    const LiftedDocuments& lifted() const noexcept { return lifted_; }
    bool hasFacingPages() const noexcept { return facing_; }
    bool hasHeaders() const noexcept { return groups_.has(Group::header) || groups_.has(Group::footer); }
    // A mark for a TableCollection of the joined text.
    std::optional<char16_t> unusedMark() const { return TableCollection::unusedMark(highUnits_); }

private:
    static bool holds(std::u16string_view text, std::u16string_view part) noexcept {
        return findText(text, part, 0, Comparison::binary) != text.npos;
    }

    static std::size_t count(std::u16string_view text, std::u16string_view sought) noexcept {
        std::size_t found = 0;
        for (std::size_t at = 0; (at = findText(text, sought, at, Comparison::binary)) != text.npos; ++at) ++found;
        return found;
    }

    static bool pairsEveryMarker(std::u16string_view text, bool tolerant) {
        const std::size_t starts = count(text, startTableMarker);
        return starts == count(text, endTableMarker) && findMarkerPairs(text, tolerant).size() == 2 * starts;
    }

    // Whether the last paragraph before the index is in a table.
    static bool endsInRow(std::u16string_view text, std::size_t end) {
        RowState row;
        for (RtfReader reader(text, 0, end, true); reader.next();) row.take(reader, reader.depth());
        return row.inRow();
    }

    static bool hasSyntax(std::u16string_view text) noexcept { return text.find_first_of(u"\\{}") != text.npos; }

    // Exact cleaning and a reader of RTF disagree about braces after "\\", and about those in binary data.
    static std::u16string_view obstacleIn(std::u16string_view text, GroupSet groups, bool tolerant) {
        if (groups.has(Group::mergePageBreak)) return u"holds a page break between joined documents";
        if (groups.has(Group::section)) return u"holds a section marker";
        if (RtfSearch(text).findWord(u"\\bin") != text.npos) return u"holds binary data";
        if (!tolerant && (holds(text, u"\\\\{") || holds(text, u"\\\\}"))) return u"has a brace after a backslash";
        if (groups.has(Group::generator) && holds(text, u"\\{\\*\\generator")) return u"names a generator in its text";
        if (groups.has(Group::tableMarker) && !pairsEveryMarker(text, tolerant)) return u"has a single table marker";
        if (leavesRowOpen(text)) return u"has a table row without its end";
        return {};
    }

    void noteText(std::u16string_view text, bool tolerant) {
        isVersionOne_ = RtfSearch(text).find(u"\\rtf1", 0) != text.npos;
        holdsTag_ = findText(text, u"<KV:", 0, Comparison::text) != text.npos;
        facing_ = RtfSearch(text).findWord(u"\\facingp") != text.npos;
        noteUnits(text);
        const auto groups = groupsOfSingleDocument(text, tolerant);
        if (!groups) {
            obstacle_ = u"holds another document";
            return;
        }
        groups_ = *groups;
        if (tolerant) lifted_.note(text, *groups);
        obstacle_ = obstacleIn(text, *groups, tolerant);
    }

    void noteUnits(std::u16string_view text) {
        constexpr char16_t first = 0xE000;
        for (const char16_t unit : text) {
            if (unit >= first && highUnits_.find(unit) == highUnits_.npos) highUnits_ += unit;
        }
    }

    bool isVersionOne_ = false;
    bool holdsTag_ = false;
    bool facing_ = false;
    GroupSet groups_;
    LiftedDocuments lifted_;
    std::u16string_view obstacle_;
    std::u16string highUnits_;  // those that may not be a mark, each once
};

}  // namespace velmor
