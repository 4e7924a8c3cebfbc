#pragma once

#include <cstddef>

namespace velmor {

// What one decoded or decompressed value may hold. It is checked before memory is taken, so a few
// kilobytes cannot ask for gigabytes.
inline constexpr std::size_t decodingLimit = std::size_t{256} << 20;

}  // namespace velmor
