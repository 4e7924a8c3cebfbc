#include "check/OutputTables.h"

#include <algorithm>

#include "rtf/merge/TableEntries.h"

namespace velmor {

ReferenceKind referenceKind(WordMeaning meaning) noexcept {
    if (meaning.is(WordTrait::font) || meaning.is(WordTrait::moreFont)) return ReferenceKind::font;
    if (meaning.is(WordTrait::colour) || meaning.is(WordTrait::moreColour)) return ReferenceKind::colour;
    switch (meaning.word) {
        case Word::s:
            return ReferenceKind::paragraphStyle;
        case Word::cs:
            return ReferenceKind::characterStyle;
        case Word::ds:
            return ReferenceKind::sectionStyle;
        case Word::ts:
        case Word::yts:
            return ReferenceKind::tableStyle;
        case Word::ls:
            return ReferenceKind::list;
        default:
            return ReferenceKind::none;
    }
}

void OutputTables::read(GroupSet kind, std::u16string_view table) {
    if (kind.has(Group::fontTable)) readEntries(table, {ReferenceKind::font});
    if (kind.has(Group::listOverrideTable)) readEntries(table, {ReferenceKind::list});
    if (kind.has(Group::styleSheet)) {
        readEntries(table, {ReferenceKind::paragraphStyle, ReferenceKind::characterStyle, ReferenceKind::sectionStyle,
                            ReferenceKind::tableStyle});
    }
    if (kind.has(Group::colourTable)) {
        const auto count = std::count(table.begin(), table.end(), u';');
        colours_ = std::max(colours_, static_cast<std::int32_t>(count));
    }
}

// The first word of each entry that has one of the kinds numbers it.
void OutputTables::readEntries(std::u16string_view table, std::initializer_list<ReferenceKind> kinds) {
    const ControlWord opening = readWord(table, readOpening(table, 0).word);
    TableEntries entries(table, opening.end, true);
    while (entries.next()) {
        EntryItems items(entries.text(), true);
        while (items.next()) {
            if (items.kind() != EntryItems::Kind::word || items.word().number.empty()) continue;
            const ReferenceKind kind = referenceKind(meaningOf(items.word().letters));
            if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) continue;
            numbers_.emplace(kind, numberOf(items.word().number));
            break;
        }
    }
}

// Every document has the automatic colour and the plain style, and the list 0 is none.
bool OutputTables::defines(ReferenceKind kind, std::int32_t number) const {
    if (number == 0 && kind != ReferenceKind::font) return true;
    if (kind == ReferenceKind::colour) return number < colours_;
    return numbers_.count({kind, number}) != 0;
}

}  // namespace velmor
