#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// Two upper-case digits a byte. Text is carried as UTF-8, in which a lone surrogate survives.

void appendHexadecimal(std::u16string& target, std::string_view bytes);
std::u16string hexadecimal(std::string_view bytes);
std::u16string hexadecimalOfText(std::u16string_view text);

// Accepts either case, and white space between the bytes. Nothing for any other character, half a byte,
// or more than decodingLimit bytes.
std::optional<std::string> fromHexadecimal(std::u16string_view encoded);
std::optional<std::u16string> textFromHexadecimal(std::u16string_view encoded);

}  // namespace velmor
