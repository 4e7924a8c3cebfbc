#pragma once

#include <cstdint>
#include <string_view>

#include "properties/PictureText.h"

namespace velmor {

class privStrCat;

// The searches by position. They read raw text with two rules of RTF: a backslash escapes the next character,
// and a delimiter ends a control word. Positions are 1-based code units, 0 means "not found". Nothing here
// raises: invalid arguments find nothing.
//
// The rules of the searches differ deliberately, and callers depend on the differences:
//   FindRTFWord          any sought text; a backslash just before the match may escape it. The
//                        delimiter is tested only at position 1 or after backslashes.
//   the other searches   only sought texts that begin with a backslash, and only where that
//                        backslash is not itself escaped. The delimiter is always tested.
namespace Module1 {

// Comparison modes. Everything that is not 0 ignores case.
inline constexpr std::int32_t binaryCompare = 0;
inline constexpr std::int32_t textCompare = 1;

// Carriage return, blank, "\", "{" and "}"; neither line feed nor digits.
bool isDelimiter(char16_t unit) noexcept;

// First acceptable psFind at or after plStart. Like the builder's Find, a match may begin in the content and
// continue into the spare tail; then no delimiter follows it.
std::int32_t FindRTFWord(std::int32_t plStart, const privStrCat& poText, std::u16string_view psFind,
                         std::int32_t plCompare, bool pbDelimited) noexcept;

// Last acceptable psFind that ends at or before plStart; -1 means the end.
std::int32_t FindRTFWordReverse(const privStrCat& poText, std::u16string_view psFind, std::int32_t plStart,
                                std::int32_t plCompare, bool pbDelimited) noexcept;

std::int32_t FindRTFWordInText(std::int32_t plStart, std::u16string_view psText, std::u16string_view psFind,
                               std::int32_t plCompare, bool pbDelimited) noexcept;

std::int32_t FindRTFWordInTextReverse(std::u16string_view psText, std::u16string_view psFind, std::int32_t plStart,
                                      std::int32_t plCompare, bool pbDelimited) noexcept;

// Replaces up to plCount matches of FindRTFWord (no delimiter test; -1: all) from plStart on. A replacement is
// never searched again, and a match that continues into the spare tail is not replaced. Linear, as the edits
// sweep from left to right.
void ReplaceRTFWord(privStrCat& poText, std::u16string_view psFind, std::u16string_view psReplace, std::int32_t plStart,
                    std::int32_t plCount, std::int32_t plCompare) noexcept;

// Matches that begin between plStart and plEnd (0: the end of the text), overlapping ones included;
// pbUnescapedOnly counts those of FindRTFWordInText.
std::int32_t CountRTFWord(std::int32_t plStart, std::u16string_view psText, std::u16string_view psFind,
                          std::int32_t plEnd, std::int32_t plCompare, bool pbUnescapedOnly) noexcept;

// First of any of the characters of psSet at or after plStart. One pass, whatever the set.
std::int32_t FindFirstOfAny(std::int32_t plStart, std::u16string_view psText, std::u16string_view psSet,
                            std::int32_t plCompare) noexcept;

struct GroupExtent {
    std::int32_t start = 0;  // the place of the opening text
    std::int32_t end = 0;    // the "}" that closes the group; 0 without one up to the limit
};

// The first group that begins with psOpening (found without regard to case). A brace counts unless the
// character before it is a backslash: a brace after "\\" counts as escaped too. plLimit 0: the end of the text.
GroupExtent FindGroupEnd(std::int32_t plStart, std::u16string_view psText, std::u16string_view psOpening,
                         std::int32_t plLimit) noexcept;

// The number of the first psWordA in psTextA; if that word is absent, the number of psWordB in psTextB. The
// number is an optional "-" and digits within 32 bits, up to a carriage return, "\", "{", "}" or blank;
// anything else, or an absent end, gives 0.
std::int32_t GetRTFWordValue(std::u16string_view psTextA, std::u16string_view psWordA, std::u16string_view psTextB,
                             std::u16string_view psWordB) noexcept;

// Cuts the blanks at the right end.
void TrimTrailingSpace(privStrCat& poText) noexcept;

void SwapValues(std::int32_t& plFirst, std::int32_t& plSecond) noexcept;

using velmor::PictureToText;

}  // namespace Module1
}  // namespace velmor
