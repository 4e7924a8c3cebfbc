#pragma once

#include <string>
#include <string_view>

#include "rtf/tables/TableMarkers.h"

namespace velmor::test {

// Markers with a short identifier.
inline std::u16string tableStart(std::u16string_view identity) {
    return std::u16string(startTableMarker).append(1, u'{').append(identity).append(u"}}");
}
inline std::u16string tableEnd(std::u16string_view identity) {
    return std::u16string(endTableMarker).append(1, u'{').append(identity).append(u"}}");
}

// Turns "<1:" and ":1>" into markers, for readable cases, and back.
inline std::u16string withMarkers(std::u16string text) {
    for (std::size_t at = 0; (at = text.find_first_of(u"<>", at)) != std::u16string::npos; ++at) {
        const bool isStart = text[at] == u'<';
        const std::u16string identity = text.substr(isStart ? at + 1 : at - 1, 1);
        const std::u16string marker = isStart ? tableStart(identity) : tableEnd(identity);
        const std::size_t begin = isStart ? at : at - 2;
        text.replace(begin, 3, marker);
        at = begin + marker.size() - 1;
    }
    return text;
}
inline std::u16string withoutMarkers(std::u16string text) {
    for (std::size_t at = 0; (at = text.find(u"{\\*\\korvane\\", at)) != std::u16string::npos; ++at) {
        const bool isStart = text.compare(at, startTableMarker.size(), startTableMarker) == 0;
        const std::size_t open = text.find(u'{', at + 1), close = text.find(u'}', open);
        // The last digit of the identifiers of counted tables.
        const std::size_t first = close - open == 37 ? close - 1 : open + 1;
        const std::u16string identity = text.substr(first, close - first);
        text.replace(at, close + 2 - at, isStart ? u"<" + identity + u":" : u":" + identity + u">");
    }
    return text;
}

}  // namespace velmor::test
