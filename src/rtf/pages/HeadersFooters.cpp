#include "rtf/pages/HeadersFooters.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/DocumentFlow.h"
#include "rtf/pages/HeaderSections.h"
#include "rtf/read/RtfReader.h"
#include "rtf/read/WordTable.h"

namespace velmor {
namespace {

using Change = HeaderSections::Change;

bool holdsAny(GroupSet groups) noexcept {
    return groups.has(Group::newHeader) || groups.has(Group::newFooter);
}

// Whether a document says something of its section that would become the host's.
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

// By text and place; what is put in without taking anything out comes first, and a change that lies in
// another one is lost in it.
void sort(std::vector<Change>& changes) {
    const auto key = [](const Change& change) {
        return std::tuple(change.text, change.begin, change.begin != change.end, ~change.end);
    };
    std::stable_sort(changes.begin(), changes.end(),
                     [&](const Change& left, const Change& right) { return key(left) < key(right); });
}

// Makes the changes of one text, those in front of the result.
template <typename Iterator>
Iterator apply(Iterator change, Iterator end, std::u16string& text, TextEdits& edits) {
    const std::uint32_t number = change->text;
    std::size_t behind = 0;
    for (; change != end && change->text == number; ++change) {
        if (change->begin < behind || (change->put.empty() && !change->cuts)) continue;
        behind = change->end;
        if (change->put.empty()) {
            edits.cut(change->begin, change->end);
        } else {
            edits.replaceApartVal(change->begin, change->end, std::move(change->put));
        }
    }
    edits.apply(text);
    return change;
}

}  // namespace

void Module1::ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options) {
    if (!needsReading(poTables, options.tolerant)) return;
    HeaderSections sections(options.tolerant);
    DocumentFlow(psText, poTables, sections).run();
    std::vector<Change> changes = sections.finish();
    sort(changes);
    TextEdits edits;
    for (auto next = changes.begin(); next != changes.end();) {
        std::u16string& text = next->text == FlowPlace::host ? psText : poTables.documents()[next->text - 1].text;
        next = apply(next, changes.end(), text, edits);
    }
}

}  // namespace velmor
