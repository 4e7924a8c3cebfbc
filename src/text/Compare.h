#pragma once

#include <cstddef>
#include <string_view>

namespace velmor {

// Text comparison maps one UTF-16 code unit to one code unit (simple case mapping from a
// generated table), so positions and lengths survive it. An ASCII letter equals only its ASCII
// partner: the Kelvin sign is no "k", the long s is no "s". Units whose case mapping is longer
// than one unit stay as they are.
char16_t lowerUnit(char16_t unit) noexcept;
char16_t upperUnit(char16_t unit) noexcept;

std::u16string lowerCase(std::u16string_view text);
std::u16string upperCase(std::u16string_view text);

bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) noexcept;

// Equal texts (in the sense of equalIgnoringCase) have equal hashes.
std::size_t hashIgnoringCase(std::u16string_view text) noexcept;

enum class Comparison { binary, text };

// 0-based index of the first `sought` at or after `start`, npos when there is none. An empty
// `sought` is found at `start` when start <= text.size(). Never copies the text.
std::size_t findText(std::u16string_view text, std::u16string_view sought, std::size_t start,
                     Comparison comparison) noexcept;

// 0-based index of the last `sought` that lies wholly in text; npos when there is none.
std::size_t findTextReverse(std::u16string_view text, std::u16string_view sought,
                            Comparison comparison) noexcept;

}  // namespace velmor
