#pragma once

#include <string>
#include <string_view>

#include "rtf/read/GroupSet.h"

namespace velmor {

// Readers may give the first row of a whole text the cell padding of any table style. If one document of a run brings
// such a style, the first row of each document without one says that it has no padding of its own.

bool bringsTableStyle(std::u16string_view text, GroupSet groups) noexcept;

// Unless the row says what its padding is.
void padFirstRow(std::u16string& text);

}  // namespace velmor
