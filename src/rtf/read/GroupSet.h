#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace velmor {

// Groups that a stage of cleaning acts on.
enum class Group : std::uint32_t {
    fontTable,          // {\fonttbl
    colourTable,        // {\colortbl
    listTable,          // {\*\listtable
    listOverrideTable,  // {\*\listoverridetable
    styleSheet,         // {\stylesheet
    header,             // {\header, {\headerf, ...
    footer,
    newHeader,       // {\*\korvanenewheader
    newFooter,       // {\*\korvanenewfooter
    mergePageBreak,  // {\*\korvanemergepagebreak
    section,         // {\*\korvanesection
    tableMarker,     // {\*\korvane\starttable and its partner
    background,      // {\*\background
    generator        // {\*\generator
};

// The groups that occur in a text, noted in one pass, so that a stage without its groups costs nothing. A group
// of the set may have been removed; a group outside it does not occur.
class GroupSet {
public:
    bool has(Group group) const noexcept { return (bits_ & bit(group)) != 0; }
    void add(Group group) noexcept { bits_ |= bit(group); }
    void add(GroupSet other) noexcept { bits_ |= other.bits_; }

    // Notes the group that begins with the brace at `index`, if it is one of them. Letter case is ignored, and
    // so is an escape before the brace.
    void note(std::u16string_view text, std::size_t index) noexcept;

private:
    static constexpr std::uint32_t bit(Group group) noexcept { return 1u << static_cast<std::uint32_t>(group); }

    std::uint32_t bits_ = 0;
};

}  // namespace velmor
