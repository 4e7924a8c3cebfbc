#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/edit/TextEdits.h"

namespace velmor {

// The removals and changes of tolerant unwrapping in the embedded documents of the host that begins at `host`.
TextEdits unwrapTolerantly(std::u16string_view text, std::size_t host);

}  // namespace velmor
