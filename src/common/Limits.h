#pragma once

#include <cstddef>

namespace velmor {

// The size limit of one decoded or decompressed value. It is checked before memory is allocated, so a
// few kilobytes cannot demand gigabytes.
inline constexpr std::size_t decodingLimit = std::size_t{256} << 20;

// The remaining limit for the compressed values of all texts that this thread reads; null while each
// text has its own decodingLimit.
inline constinit thread_local std::size_t* decodingAllowance = nullptr;

}  // namespace velmor
