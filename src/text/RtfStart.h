#pragma once

#include <string_view>

namespace velmor {

// A text is an RTF document when it begins so.
inline constexpr std::u16string_view rtfStart = u"{\\rtf1";

}  // namespace velmor
