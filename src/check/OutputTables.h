#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/read/GroupSet.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

enum class ReferenceKind : std::uint8_t {
    none,
    font,
    colour,
    paragraphStyle,
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
ReferenceKind referenceKind(WordMeaning meaning) noexcept;

// The numbers that the tables of a document define.
class OutputTables {
public:
    static constexpr std::int32_t theme = 1;  // stands for the theme of a document

    // `table`: a whole group at `begin` of the source, whose kind is the only one in the set.
    void read(GroupSet kind, std::u16string_view table, std::size_t begin);
    void addTheme() { numbers_.emplace(ReferenceKind::themeColour, theme); }
    bool defines(ReferenceKind kind, std::int32_t number) const;
    // What the tables that were read refer to, fonts and colours excepted.
    const std::vector<TableReference>& references() const noexcept { return references_; }

private:
    void takeWord(GroupSet table, const ControlWord& word, std::size_t at);
    void define(ReferenceKind kind, std::int32_t number);

    std::set<std::pair<ReferenceKind, std::int32_t>> numbers_;
    std::int32_t colours_ = 0;
    std::vector<TableReference> references_;
    bool isNumbered_ = false;  // the entry that is being read
};

}  // namespace velmor
