#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// With "+", "/" and "=" padding, in one line.
std::u16string base64(std::string_view bytes);

// White space anywhere and missing padding are accepted. Empty for any other character, an
// incomplete group, anything after the padding, or more than decodingLimit bytes.
std::optional<std::string> fromBase64(std::u16string_view encoded);

}  // namespace velmor
