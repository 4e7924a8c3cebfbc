#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

class privStrCat;

// Escapes plain text for RTF, in place: "\", "{" and "}" get a backslash in front, and a carriage
// return with its line feed becomes "\par " (a lone one stays). A text that begins "{\rtf1", in
// exactly these letters, is a document and stays as it is. Linear; the text grows at most once, and
// one without anything to escape costs a single look at it. Raises std::bad_alloc or
// std::length_error only, and then leaves the text as it was.
void ProtectRTFCode(std::u16string& psValue);

// The length that ProtectRTFCode would give the text. It never exceeds three times the text's own.
std::size_t protectedRTFLength(std::u16string_view psValue) noexcept;

// Appends psValue to poTarget in the form that ProtectRTFCode gives it.
void appendProtectedRTF(privStrCat& poTarget, std::u16string_view psValue);

}  // namespace velmor
