#pragma once

#include <optional>
#include <string_view>

namespace velmor {

// A unit that does not occur in the text, for a collection's placeholders: a noncharacter, or a private or
// unassigned one if the text contains those. Nothing when the text contains all of them.
std::optional<char16_t> unusedMark(std::u16string_view text);

}  // namespace velmor
