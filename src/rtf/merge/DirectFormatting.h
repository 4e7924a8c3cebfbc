#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// The look of a style is a run of control words without blanks, as in its entry of the style sheet. Looks of writers
// are shorter than this, and no more is read: that keeps the time for each style constant.
inline constexpr std::size_t longestLook = 1000;

// A word of the look.
std::optional<ControlWord> findWord(std::u16string_view look, std::u16string_view letters);

// The words of the look that format text where they are written; those that only a style has are left out.
std::u16string directWords(std::u16string_view look);

// Words that undo what `look` says and `own` does not, as far as RTF has such words: "keep with the next paragraph",
// borders and tabs stay.
std::u16string undoingWords(std::u16string_view look, std::u16string_view own);

}  // namespace velmor
