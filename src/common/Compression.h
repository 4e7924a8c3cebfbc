#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "common/Limits.h"

namespace velmor {

// A zlib stream with its checksum. Throws Error 7 when there is not enough memory.
std::string compressBytes(std::string_view bytes);

// Empty if the stream is damaged, ends early, has bytes after its end, or would give more than
// `limit` bytes; a result that is too long is refused before memory for it is allocated.
std::optional<std::string> decompressBytes(std::string_view compressed, std::size_t limit = decodingLimit);

}  // namespace velmor
