#pragma once

#include <memory>

namespace velmor {

// Lets a reference go without recursion: releases asked for while one is under way wait until it
// is done. However deep collections nest, destroying them takes constant stack.
void releaseFlat(std::shared_ptr<void> reference);

}  // namespace velmor
