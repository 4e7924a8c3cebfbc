#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Two upper-case digits a byte.
std::u16string hexadecimal(std::string_view bytes);

// Accepts either case, and white space between the bytes. Nothing for any other character, half a byte,
// or more than decodingLimit bytes.
std::optional<std::string> fromHexadecimal(std::u16string_view encoded);

}  // namespace velmor
