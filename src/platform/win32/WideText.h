#pragma once

#include <string>
#include <string_view>

namespace velmor::platform {

// The system's calls take wchar_t, which has sixteen bits here.
inline std::wstring wide(std::u16string_view text) {
    return std::wstring(text.begin(), text.end());
}
inline std::u16string fromWide(std::wstring_view text) {
    return std::u16string(text.begin(), text.end());
}

// A zero would end the text too early.
inline bool holdsZero(std::u16string_view text) {
    return text.find(u'\0') != text.npos;
}

}  // namespace velmor::platform
