#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// Escapes plain text for RTF, in place: a backslash precedes "\", "{" and "}", and a carriage return with its
// line feed becomes "\par " (a lone one stays). A text that begins "{\rtf1", in exactly these letters, is a
// document and stays unchanged. Linear; the text grows at most once, and a text without escapes is only read.
// Raises only std::bad_alloc or std::length_error, and then leaves the text unchanged.
void ProtectRTFCode(std::u16string& psValue);

// The length that ProtectRTFCode would give the text. It never exceeds three times the text's own.
std::size_t protectedRTFLength(std::u16string_view psValue) noexcept;

}  // namespace velmor
