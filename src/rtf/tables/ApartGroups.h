#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Groups whose paragraphs are separate from those around them: footnotes, headers, footers, text boxes, and
// groups that only readers without nested tables read. Found in one pass on first use.
class ApartGroups {
public:
    explicit ApartGroups(std::u16string_view text) noexcept : text_(text) {}

    // The closing brace of the group that begins with the word at the index, with or without "\*"; 0 without
    // such a group or brace.
    std::size_t closingBrace(std::size_t word);

private:
    void find();

    std::u16string_view text_;
    std::vector<TextRange> groups_;  // from the first word to the closing brace, ascending
    bool isFound_ = false;
};

}  // namespace velmor
