#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

#include "rtf/read/RtfReader.h"

namespace velmor {

// How deep a paragraph is in tables: 0 outside of them, 1 in a table, 2 in a table in a cell, and so on.
using Level = std::uint32_t;

// The level of the current paragraph. It gets the words of a text in order, without those of groups that have
// paragraphs of their own and of the definitions of nested rows.
struct TableLevel {
    Level paragraph = 0;    // what \itap and \intbl say
    Level cell = 0;         // of the last nested cell; 0 if none follows the outer cell
    bool rowBegun = false;  // the definition of an outer row precedes, and the row has not ended

    // A nested row has the level of its cells; without cells that of the paragraph.
    Level nestedRow() const noexcept { return cell != 0 ? cell : std::max(paragraph, Level{2}); }

    // The level of the paragraph, cell or row that the word ends; nothing when it ends none.
    std::optional<Level> take(const ControlWord& word, Word meaning) noexcept {
        switch (meaning) {
            case Word::pard:
                paragraph = 0;
                return {};
            case Word::intbl:
                paragraph = std::max(paragraph, Level{1});
                return {};
            case Word::itap:
                paragraph = numberOfItap(word.number);
                return {};
            case Word::trowd:
                rowBegun = true;
                return {};
            case Word::par:
                return std::max(paragraph, Level{rowBegun});
            case Word::cell:
                cell = 0;
                return 1;
            case Word::nestcell:
                return cell = std::max(paragraph, Level{2});
            case Word::row:
                rowBegun = false;
                return 1;
            case Word::nestrow:
                return nestedRow();
            default:
                return {};
        }
    }

private:
    static Level numberOfItap(std::u16string_view number) noexcept {
        if (number.empty()) return 1;
        return number[0] == u'-' ? 0 : static_cast<Level>(numberOf(number));
    }
};

}  // namespace velmor
