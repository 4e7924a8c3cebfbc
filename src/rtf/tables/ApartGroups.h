#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Some groups have paragraphs that are separate from those around them: footnotes, headers, footers, text boxes, and
// groups that only readers without nested tables read. These begin with a word, with or without "\*" before it.

// The first word of the group that begins with the brace, if it is one of these; else 0.
std::size_t firstWordOfApartGroup(std::u16string_view text, std::size_t brace) noexcept;

// These groups, each from its first word to its closing brace; groups without one are left out. Ascending. One pass.
std::vector<TextRange> findApartGroups(std::u16string_view text);

}  // namespace velmor
