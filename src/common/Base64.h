#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Base64 with "+", "/" and "=" padding, in one line. Text is carried as UTF-8, in which a lone
// surrogate survives.

void appendBase64(std::u16string& target, std::string_view bytes);
std::u16string base64(std::string_view bytes);
std::u16string base64OfText(std::u16string_view text);

// White space anywhere and missing padding are accepted. Empty for any other character, an
// incomplete group, anything after the padding, or more than decodingLimit bytes.
std::optional<std::string> fromBase64(std::u16string_view encoded);
std::optional<std::u16string> textFromBase64(std::u16string_view encoded);

}  // namespace velmor
