#include "check/OutputTables.h"

#include <algorithm>
#include <utility>

#include "rtf/merge/StyleSheet.h"
#include "rtf/merge/TableEntries.h"

namespace velmor {

namespace {

constexpr std::u16string_view styleLinks[] = {u"sbasedon", u"snext", u"slink"};

bool isStyle(ReferenceKind kind) noexcept {
    return kind >= ReferenceKind::paragraphStyle && kind <= ReferenceKind::tableStyle;
}

}  // namespace

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

void OutputTables::read(GroupSet kind, std::u16string_view table, std::size_t begin) {
    const ControlWord opening = readWord(table, readOpening(table, 0).word);
    if (kind.has(Group::colourTable)) {
        const auto count = std::count(table.begin(), table.end(), u';');
        colours_ = std::max(colours_, static_cast<std::int32_t>(count));
    }
    for (TableEntries entries(table, opening.end, true); entries.next();) {
        isNumbered_ = false;
        const std::size_t entry = begin + static_cast<std::size_t>(entries.text().data() - table.data());
        for (EntryItems items(entries.text(), true); items.next();) {
            if (items.kind() == EntryItems::Kind::word) takeWord(kind, items.word(), entry + items.begin());
        }
    }
}

// The first word of an entry that can number it does.
void OutputTables::takeWord(GroupSet table, const ControlWord& word, std::size_t at) {
    const std::int32_t number = numberOf(word.number);
    const auto refer = [&](ReferenceKind kind, std::int32_t to) {
        references_.push_back({kind, to, {at, at + (word.end - word.begin)}});
    };
    const WordMeaning meaning = meaningOf(word.letters);
    if (meaning.is(WordTrait::themeColour) && table.has(Group::colourTable)) refer(ReferenceKind::themeColour, theme);
    if (word.number.empty()) return;
    const ReferenceKind kind = referenceKind(meaning);
    if (table.has(Group::fontTable) && kind == ReferenceKind::font) define(kind, number);
    if (table.has(Group::listTable) && word.letters == u"listid") define(ReferenceKind::listId, number);
    if (table.has(Group::listOverrideTable)) {
        if (kind == ReferenceKind::list) define(kind, number);
        if (word.letters == u"listid") refer(ReferenceKind::listId, number);
    }
    if (table.has(Group::styleSheet)) {
        if (isStyle(kind)) define(kind, number);
        if (std::find(std::begin(styleLinks), std::end(styleLinks), word.letters) != std::end(styleLinks)) {
            refer(ReferenceKind::anyStyle, number);
        }
    }
}

void OutputTables::define(ReferenceKind kind, std::int32_t number) {
    if (std::exchange(isNumbered_, true)) return;
    numbers_.emplace(kind, number);
    if (isStyle(kind)) numbers_.emplace(ReferenceKind::anyStyle, number);
}

// Every document has the automatic colour and the plain style, and the list 0 is none.
bool OutputTables::defines(ReferenceKind kind, std::int32_t number) const {
    if (number == 0 && kind != ReferenceKind::font) return true;
    if (kind == ReferenceKind::colour) return number < colours_;
    if (kind == ReferenceKind::anyStyle && number == noStyle) return true;
    return numbers_.count({kind, number}) != 0;
}

}  // namespace velmor
