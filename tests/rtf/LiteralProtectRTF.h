#pragma once

#include <string>
#include <string_view>

namespace velmor::test {

inline std::u16string replaced(std::u16string text, std::u16string_view sought, std::u16string_view replacement) {
    for (std::size_t at = 0; (at = text.find(sought, at)) != std::u16string::npos; at += replacement.size()) {
        text.replace(at, sought.size(), replacement);
    }
    return text;
}

// The four replacements in order, each in the whole text.
inline std::u16string literallyProtected(const std::u16string& text) {
    if (text.substr(0, 6) == u"{\\rtf1") return text;
    return replaced(replaced(replaced(replaced(text, u"\\", u"\\\\"), u"{", u"\\{"), u"}", u"\\}"), u"\r\n", u"\\par ");
}

}  // namespace velmor::test
