#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::platform {

// Bytes as UTF-16 code units; an odd last byte is dropped.
std::u16string unitsOf(std::string_view bytes, bool bigEndian);

// The text after a byte order mark (UTF-8, UTF-16 in either order); nothing without a mark.
std::optional<std::u16string> decodeMarked(std::string_view bytes);

}  // namespace velmor::platform
