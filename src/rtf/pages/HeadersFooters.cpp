#include "rtf/pages/HeadersFooters.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/DocumentFlow.h"
#include "rtf/pages/HeaderSections.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"

namespace velmor {
namespace {

bool holdsAny(GroupSet groups) noexcept {
    return groups.has(Group::newHeader) || groups.has(Group::newFooter);
}

// Whether a document has words about its section that would affect the host's.
bool holdsSectionWord(std::u16string_view text, bool tolerant) noexcept {
    static const WordSet sectionWords({WordTrait::section}, {Word::facingp});
    constexpr std::u16string_view plainly[] = {u"sectd", u"titlepg", u"headery", u"footery", u"facingp"};
    for (RtfReader reader(text, 0, text.size()); reader.nextWord();) {
        if (!sectionWords.mayHold(text, reader.position())) continue;
        const std::u16string_view letters = reader.word().letters;
        if (tolerant ? sectionWords.holds(meaningOf(letters))
                     : letters.starts_with(u"pgbrdr") || std::count(std::begin(plainly), std::end(plainly), letters)) {
            return true;
        }
    }
    return false;
}

bool needsReading(TableCollection& tables, bool tolerant) {
    if (holdsAny(tables.hostGroups())) return true;
    return std::any_of(tables.documents().begin(), tables.documents().end(), [&](const auto& document) {
        return holdsAny(document.groups) || document.groups.has(Group::header) || document.groups.has(Group::footer) ||
               holdsSectionWord(document.text, tolerant);
    });
}

}  // namespace

void Module1::ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    if (!needsReading(poTables, options.tolerant)) return;
    HeaderSections sections(options.tolerant);
    DocumentFlow(psText, poTables, sections).run();
    std::map<std::uint32_t, TextEdits> edits;
    for (HeaderSections::Change& change : sections.finish()) {
        if (change.put.empty() && !change.cuts) continue;
        edits[change.text].replaceApartVal(change.begin, change.end, std::move(change.put));
    }
    for (auto& [number, changes] : edits) {
        changes.apply(number == FlowPlace::host ? psText : poTables.documents()[number - 1].text);
    }
}

}  // namespace velmor
