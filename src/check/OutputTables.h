#pragma once

#include <algorithm>
#include <cstdint>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/merge/TableEntries.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

enum class ReferenceKind : std::uint8_t {
    none,
    font,
    colour,
    paragraphStyle,  // the styles in the order of StyleKind
    characterStyle,
    sectionStyle,
    tableStyle,
    list,
    // Within the tables.
    anyStyle,  // the style on which one is based, the next or the linked one
    listId,    // the list of an override
    themeColour
};

// A reference that one table makes to another one, or to the theme.
struct TableReference {
    ReferenceKind kind;
    std::int32_t number;
    TextRange word;  // in the source
};

// What the number of a word of the text refers to.
inline ReferenceKind referenceKind(WordMeaning meaning) noexcept {
    if (meaning.is(WordTrait::font) || meaning.is(WordTrait::moreFont)) return ReferenceKind::font;
    if (meaning.is(WordTrait::colour) || meaning.is(WordTrait::moreColour)) return ReferenceKind::colour;
    if (meaning.word == Word::ls) return ReferenceKind::list;
    const auto style = meaning.word == Word::yts ? StyleKind::table : styleKindOf(meaning.word);
    if (!style) return ReferenceKind::none;
    return static_cast<ReferenceKind>(static_cast<int>(ReferenceKind::paragraphStyle) + static_cast<int>(*style));
}

// The numbers that the tables of a document define.
class OutputTables {
public:
    static constexpr std::int32_t theme = 1;  // stands for the theme of a document

    // `table`: a whole group at `begin` of the source, whose kind is the only one in the set.
    void read(GroupSet kind, std::u16string_view table, std::size_t begin) {
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

    void addTheme() { numbers_.emplace(ReferenceKind::themeColour, theme); }

    // Every document has the automatic colour and the plain style, and the list 0 is none.
    bool defines(ReferenceKind kind, std::int32_t number) const {
        if (number == 0 && kind != ReferenceKind::font) return true;
        if (kind == ReferenceKind::colour) return number < colours_;
        if (kind == ReferenceKind::anyStyle && number == noStyle) return true;
        return numbers_.count({kind, number}) != 0;
    }

    // What the tables that were read refer to, fonts and colours excepted.
    const std::vector<TableReference>& references() const noexcept { return references_; }

private:
    static constexpr std::u16string_view styleLinks[] = {u"sbasedon", u"snext", u"slink"};

    static bool isStyle(ReferenceKind kind) noexcept {
        return kind >= ReferenceKind::paragraphStyle && kind <= ReferenceKind::tableStyle;
    }

    // The first word of an entry that can number it does.
    void takeWord(GroupSet table, const ControlWord& word, std::size_t at) {
        const std::int32_t number = numberOf(word.number);
        const auto refer = [&](ReferenceKind kind, std::int32_t to) {
            references_.push_back({kind, to, {at, at + (word.end - word.begin)}});
        };
        const WordMeaning meaning = meaningOf(word.letters);
        if (meaning.is(WordTrait::themeColour) && table.has(Group::colourTable))
            refer(ReferenceKind::themeColour, theme);
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

    void define(ReferenceKind kind, std::int32_t number) {
        if (std::exchange(isNumbered_, true)) return;
        numbers_.emplace(kind, number);
        if (isStyle(kind)) numbers_.emplace(ReferenceKind::anyStyle, number);
    }

    std::set<std::pair<ReferenceKind, std::int32_t>> numbers_;
    std::int32_t colours_ = 0;
    std::vector<TableReference> references_;
    bool isNumbered_ = false;  // the entry that is being read
};

}  // namespace velmor
