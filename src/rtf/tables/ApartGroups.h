#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// The groups whose paragraphs are separate from those around them: footnotes, headers, footers, text boxes, and
// groups that only readers without nested tables read. Each range begins with the group's first word, with or without
// "\*" before it, and ends with the closing brace; groups without one are left out. Ascending. One pass.
std::vector<TextRange> findApartGroups(std::u16string_view text);

}  // namespace velmor
