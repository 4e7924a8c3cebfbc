#include "check/OutputCheck.h"

#include <algorithm>
#include <set>
#include <utility>

#include "check/OutputTables.h"
#include "check/RtfCheck.h"

namespace velmor {

namespace {

struct ReferenceName {
    ReferenceKind kind;
    DiagnosticCode code;
    std::u16string_view name;
};
constexpr ReferenceName referenceNames[] = {
    {ReferenceKind::font, DiagnosticCode::unresolvedFont, u"font "},
    {ReferenceKind::colour, DiagnosticCode::unresolvedColour, u"colour "},
    {ReferenceKind::paragraphStyle, DiagnosticCode::unresolvedStyle, u"paragraph style "},
    {ReferenceKind::characterStyle, DiagnosticCode::unresolvedStyle, u"character style "},
    {ReferenceKind::sectionStyle, DiagnosticCode::unresolvedStyle, u"section style "},
    {ReferenceKind::tableStyle, DiagnosticCode::unresolvedStyle, u"table style "},
    {ReferenceKind::list, DiagnosticCode::unresolvedList, u"list "},
    {ReferenceKind::anyStyle, DiagnosticCode::unresolvedStyleLink, u"style "},
    {ReferenceKind::listId, DiagnosticCode::unresolvedListId, u"list id "},
    {ReferenceKind::themeColour, DiagnosticCode::unresolvedTheme, u""},
};

class OutputCheck {
public:
    OutputCheck(const TemplateFile& file, DiagnosticList& found)
        : file_(file), source_(file.source()), isRtf_(documentStandsAt(source_, 0)), found_(found) {}

    void run() {
        checkMarkers();
        checkBytes();
        if (!isRtf_) return;
        reportRtf(file_, found_);
        readTables();
        checkWords();
    }

private:
    void checkMarkers() {
        for (const Story& story : file_.stories()) {
            std::size_t depth = 0;
            for (MarkerPlace at = findMarker(story.text(), 0); at.position < story.text().size();
                 at = findMarker(story.text(), at.position + 1)) {
                if (depth == 0) {
                    const std::size_t length = at.opening ? openingMarker.size() : closingMarker.size();
                    found_.add(DiagnosticCode::markerLeft, file_, story, {at.position, at.position + length},
                               u"a tag is left in the document");
                }
                if (at.opening) {
                    ++depth;
                } else if (depth > 0) {
                    --depth;
                }
            }
        }
    }

    // Control characters that no text holds, a report for each run. Writers may put NULs after a document.
    void checkBytes() {
        const std::size_t end = isRtf_ ? std::min(findGroupEnd(source_, 1, true), source_.size()) : source_.size();
        for (std::size_t at = 0; at < end; ++at) {
            if (isRtf_ && source_[at] == u'\\') {
                at = skipEscape(source_, at) - 1;
                continue;
            }
            const bool isBinary = source_[at] < u' ' && source_[at] != u'\f' && !isWhiteSpace(source_[at]);
            if (!isBinary) continue;
            const std::size_t begin = at;
            while (at + 1 < end && source_[at + 1] < u' ') ++at;
            report(DiagnosticCode::strayBinary, {begin, at + 1}, u"the text holds binary data");
        }
    }

    void readTables() {
        RtfReader reader(source_, 0, source_.size(), true);
        while (reader.nextBrace()) {
            if (!reader.opens()) continue;
            GroupSet kind;
            kind.note(source_, reader.position());
            const bool isTable = kind.has(Group::fontTable) || kind.has(Group::colourTable) ||
                                 kind.has(Group::styleSheet) || kind.has(Group::listTable) ||
                                 kind.has(Group::listOverrideTable);
            if (!isTable) continue;
            const std::size_t end =
                std::min(findGroupEnd(source_, reader.position() + 1, true), source_.size() - 1) + 1;
            const TextRange range{reader.position(), end};
            tables_.read(kind, range.of(source_), range.begin);
            ranges_.emplace_back(range, kind);
            reader.goOnAt(end);
        }
        if (source_.find(u"{\\*\\themedata") != source_.npos) tables_.addTheme();
        for (const TableReference& each : tables_.references()) checkReference(each.kind, each.number, each.word);
    }

    void checkWords() {
        static const WordSet set({WordTrait::font, WordTrait::moreFont, WordTrait::colour, WordTrait::moreColour},
                                 {Word::s, Word::cs, Word::ds, Word::ts, Word::yts, Word::ls});
        RtfReader reader(source_, 0, source_.size(), true);
        while (reader.next()) {
            if (reader.opens()) {
                checkGroup(reader.position());
            } else if (!reader.closes() && set.mayHold(source_, reader.position())) {
                checkWord(reader.word());
            }
        }
    }

    // A group that cleaning would have removed or marked as done. Those that mark tables stay.
    void checkGroup(std::size_t brace) {
        GroupSet kind;
        kind.note(source_, brace);
        const bool isMarker = kind.has(Group::newHeader) || kind.has(Group::newFooter) ||
                              kind.has(Group::mergePageBreak) || kind.has(Group::section);
        if (isMarker)
            report(DiagnosticCode::markerLeft, {brace, brace + 1}, u"a marker of cleaning is left in the document");
        if (brace > 0 && documentStandsAt(source_, brace)) {
            report(DiagnosticCode::markerLeft, {brace, brace + 1}, u"a document lies within the document");
        }
    }

    // Of the words of a table only fonts and colours are references here.
    void checkWord(const ControlWord& word) {
        const ReferenceKind kind = referenceKind(meaningOf(word.letters));
        if (kind == ReferenceKind::none || word.number.empty()) return;
        while (nextRange_ < ranges_.size() && ranges_[nextRange_].first.end <= word.begin) ++nextRange_;
        if (nextRange_ < ranges_.size() && ranges_[nextRange_].first.begin <= word.begin) {
            const GroupSet table = ranges_[nextRange_].second;
            const bool holdsLooks = table.has(Group::styleSheet) || table.has(Group::listTable);
            if (!holdsLooks || (kind != ReferenceKind::font && kind != ReferenceKind::colour)) return;
        }
        checkReference(kind, numberOf(word.number), {word.begin, word.end});
    }

    void checkReference(ReferenceKind kind, std::int32_t number, TextRange word) {
        if (tables_.defines(kind, number) || !reported_.emplace(kind, number).second) return;
        const auto& name = *std::find_if(std::begin(referenceNames), std::end(referenceNames),
                                         [&](const ReferenceName& each) { return each.kind == kind; });
        report(name.code, word,
               kind == ReferenceKind::themeColour
                   ? std::u16string(u"this colour is one of a theme, and the document has no theme")
                   : std::u16string(name.name) + decimal(number) + u" is not in the document's tables");
    }

    void report(DiagnosticCode code, TextRange range, std::u16string message) {
        found_.addInSource(code, file_, range, std::move(message));
    }

    const TemplateFile& file_;
    const std::u16string& source_;
    const bool isRtf_;
    DiagnosticList& found_;
    OutputTables tables_;
    std::vector<std::pair<TextRange, GroupSet>> ranges_;  // of the tables, in order
    std::size_t nextRange_ = 0;
    std::set<std::pair<ReferenceKind, std::int32_t>> reported_;
};

}  // namespace

CheckResult checkOutput(std::u16string name, std::u16string text) {
    const TemplateFile file(std::move(name), std::move(text), {});
    DiagnosticList found;
    OutputCheck(file, found).run();
    const std::size_t more = found.more();
    CheckResult result{std::move(found).take(), more};
    std::stable_sort(
        result.diagnostics.begin(), result.diagnostics.end(),
        [](const Diagnostic& left, const Diagnostic& right) { return left.place.offset < right.place.offset; });
    return result;
}

}  // namespace velmor
