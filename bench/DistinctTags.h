#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor::bench {

// About 145 bytes of RTF between two tags.
inline constexpr std::u16string_view paragraph =
    u"\\pard\\plain \\s1\\qj\\fi360\\li0\\ri0\\sl276\\slmult1\\widctlpar {\\f1\\fs22\\lang1033 "
    u"The quick brown fox jumps over the lazy dog {\\b and so on} \\par }\r\n";

inline std::u16string number(std::size_t value) {
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

// "<KV:TAG>PROPERTY:n7=v7:</KV>"
inline std::u16string distinctTag(std::size_t index) {
    const std::u16string own = number(index);
    return u"<KV:TAG>PROPERTY:n" + own + u"=v" + own + u":</KV>";
}

// The floor: a loop that only finds the next opening and closing marker, copies the text
// between tags and emits a text in place of each tag.
inline std::u16string floorOf(std::u16string_view text) {
    std::u16string result;
    result.reserve(text.size());
    std::size_t position = 0;
    for (;;) {
        const std::size_t open = text.find(u"<KV:", position);
        if (open == std::u16string_view::npos) break;
        result.append(text.substr(position, open - position));
        const std::size_t close = text.find(u"</KV>", open + 4);
        result.append(u"v123456");
        position = close + 5;
    }
    return result.append(text.substr(position));
}

}  // namespace velmor::bench
