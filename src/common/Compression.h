#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "common/Limits.h"

namespace velmor {

// Compressed bytes are a zlib stream with its checksum; compressed text is the base64 text of the
// zlib stream of the text's UTF-8, in which a lone surrogate survives.

// Throws Error 7 when there is not enough memory.
std::string compressBytes(std::string_view bytes);
std::u16string compressedText(std::u16string_view text);

// Empty if the stream is damaged, ends early, has bytes after its end, or would give more than
// `limit` bytes; a result that is too long is refused before memory for it is allocated.
std::optional<std::string> decompressBytes(std::string_view compressed, std::size_t limit = decodingLimit);
std::optional<std::u16string> textFromCompressed(std::u16string_view encoded);

}  // namespace velmor
