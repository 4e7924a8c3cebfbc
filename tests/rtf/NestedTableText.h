#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Pieces.h"
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

// Tables in tables generated from bytes: markers, most of them in pairs, and difficult pieces between them.
inline std::u16string nestedTableText(const std::uint8_t* data, std::size_t size) {
    static const auto pieces = piecesOf(
        u"\\trowd\\irow0\\cellx9 |\\trowd\\cellx5\\pard\\intbl |\\trowd\\trkeep\\cellx5\\cellx7\\ql\\b |"
        u"\\trowd |\\row|\\row |\\row}|\\trkeep\\row |\\cell|\\cell |a\\cell b\\cell |\\cellx1|\\intbl|"
        u"\\intbl |\\intbl0|\\itap|\\itap |\\itap0|\\itap12 |\\itap-2|{\\itap}|\\par|\\par |\\pard|"
        u"\\pard\\qc\\b\\li20\\intbl\\fs20 |\\pard\\plain |\\nestcell |\\nestrow|"
        u"{\\*\\nesttableprops\\trowd\\irow0\\cellx3\\nestrow}|{\\nonesttables\\par}|"
        u"{\\footnote \\pard\\itap0 x\\par\\cell}|{|}|}\r\n}|\\|\\'e4| |  |\r\n|x|5|{\\*\\bkmkstart b}|\\tab |"
        u"\\b0");
    std::u16string text;
    std::vector<char16_t> open;
    char16_t next = u'A';
    for (std::size_t i = 0; i < size; ++i) {
        const unsigned value = data[i];
        if (value < 40) {
            open.push_back(next++);
            text += tableStart({&open.back(), 1});
        } else if (value < 76 && !open.empty()) {
            text += tableEnd({&open.back(), 1});
            open.pop_back();
        } else if (value == 76) {
            text += tableStart(u"?");
        } else if (value == 77) {
            text += tableEnd(u"B");
        } else {
            text += pieces[value % pieces.size()];
        }
    }
    for (; !open.empty(); open.pop_back()) text += tableEnd({&open.back(), 1});
    return text;
}

}  // namespace velmor::test
