#pragma once

#include <cstdint>
#include <set>
#include <string_view>
#include <utility>

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
    list
};

// What the number of a word refers to.
ReferenceKind referenceKind(WordMeaning meaning) noexcept;

// The numbers that the tables of a document define.
class OutputTables {
public:
    // `table`: a whole group, whose kind is the only one in the set; nothing when it is none of the tables.
    void read(GroupSet kind, std::u16string_view table);
    bool defines(ReferenceKind kind, std::int32_t number) const;

private:
    void readEntries(std::u16string_view table, std::initializer_list<ReferenceKind> kinds);

    std::set<std::pair<ReferenceKind, std::int32_t>> numbers_;
    std::int32_t colours_ = 0;
};

}  // namespace velmor
