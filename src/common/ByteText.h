#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Bytes as text and back.

// Base64 with "+", "/" and "=" padding, in one line.
std::u16string base64(std::string_view bytes);

// White space anywhere and missing padding are accepted. Empty for any other character, an
// incomplete group, anything after the padding, or more than decodingLimit bytes.
std::optional<std::string> fromBase64(std::u16string_view encoded);

// Two upper-case digits a byte.
std::u16string hexadecimal(std::string_view bytes);

// Accepts either case, and white space between the bytes. Nothing for any other character, half a byte,
// or more than decodingLimit bytes.
std::optional<std::string> fromHexadecimal(std::u16string_view encoded);

}  // namespace velmor
