#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Groups of text that stands apart from the paragraphs around it: footnotes, headers, footers, text
// boxes, and what only readers without nested tables read. Found in one pass when first asked for.
class ApartGroups {
public:
    explicit ApartGroups(std::u16string_view text) noexcept : text_(text) {}

    // The closing brace of the group that begins with the word at the index, behind its brace and
    // "\*" or not; 0 when none does, or its brace is missing.
    std::size_t closingBrace(std::size_t word);

private:
    void find();

    std::u16string_view text_;
    std::vector<TextRange> groups_;  // from the first word to the closing brace, ascending
    bool isFound_ = false;
};

}  // namespace velmor
