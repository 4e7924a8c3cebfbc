#include "text/OneLine.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "text/Characters.h"
#include "text/Encoding.h"

namespace velmor {

namespace {

std::u16string escaped(char16_t unit) {
    if (unit == u'\r') return u"\\r";
    if (unit == u'\n') return u"\\n";
    if (unit == u'\t') return u"\\t";
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", static_cast<unsigned>(unit));
    return fromUtf8(text.data());
}

bool isControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

bool isSurrogate(char16_t unit) {
    return isHighSurrogate(unit) || isLowSurrogate(unit);
}

bool isPair(std::u16string_view text) {
    return text.size() > 1 && isHighSurrogate(text[0]) && isLowSurrogate(text[1]);
}

}  // namespace

std::u16string onOneLine(std::u16string_view text, std::size_t longest) {
    std::size_t end = std::min(text.size(), longest);
    if (end < text.size() && isPair(text.substr(end - 1))) --end;
    std::u16string line;
    for (std::size_t i = 0; i < end; ++i) {
        if (isPair(text.substr(i))) {
            line += text.substr(i++, 2);
        } else if (isControl(text[i]) || isSurrogate(text[i])) {
            line += escaped(text[i]);
        } else {
            line += text[i];
        }
    }
    if (end < text.size()) line += u"... (" + fromUtf8(std::to_string(text.size())) + u" characters)";
    return line;
}

std::u16string withoutLoneSurrogates(std::u16string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (isPair(std::u16string_view(text).substr(i))) {
            ++i;
        } else if (isSurrogate(text[i])) {
            text[i] = u'\xFFFD';
        }
    }
    return text;
}

}  // namespace velmor
