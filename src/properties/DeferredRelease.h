#pragma once

#include <memory>

namespace velmor {

// Releases a reference without recursion: releases during another one are postponed until it is done. However
// deep collections nest, destroying them takes constant stack.
void releaseFlat(std::shared_ptr<void> reference);

}  // namespace velmor
