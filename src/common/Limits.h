#pragma once

#include <cstddef>

namespace velmor {

// What one decoded or decompressed value may hold. It is checked before memory is taken, so a few
// kilobytes cannot ask for gigabytes.
inline constexpr std::size_t decodingLimit = std::size_t{256} << 20;

// What the compressed values of all texts that this thread reads may still give together; null
// while each text has its own decodingLimit.
inline constinit thread_local std::size_t* decodingAllowance = nullptr;

}  // namespace velmor
