#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "rtf/read/RtfReader.h"

// Texts with tables for the benchmarks of the table stages, and their floor.
namespace velmor::bench {

// ---- Texts as word processors write them: the definition precedes the cells and is repeated after them.

inline std::u16string definition(std::u16string_view place) {
    std::u16string text(u"\\trowd ");
    text.append(place).append(u"\\ts11\\trgaph108\\trleft-108\\trbrdrt\\brdrs\\brdrw10 \\trbrdrl\\brdrs\\brdrw10 ");
    text.append(u"\\trftsWidth1\\trpaddl108\\trpaddr108\\trpaddfl3\\trpaddfr3");
    for (const std::u16string_view edge : {u"2844", u"5796", u"8748"}) {
        text.append(u"\\clvertalt\\clbrdrt\\brdrs\\brdrw10 \\clbrdrb\\brdrs\\brdrw10 \\cltxlrtb\\clftsWidth3");
        text.append(u"\\clwWidth2952\\clshdrawnil \\cellx").append(edge);
    }
    return text;
}

inline constexpr std::u16string_view paragraph =
    u"\\pard\\plain \\ql \\li0\\ri0\\widctlpar\\faauto\\rin0\\lin0\\itap0 \\fs24\\lang1031\\cgrid {\\insrsid1 Some "
    u"words of "
    u"an ordinary letter, with \\b one\\b0  word in bold, and so on to the end of the line.\\par }";

inline std::u16string row(std::u16string_view place) {
    std::u16string text = definition(place);
    text.append(
        u"\\pard \\ql \\li0\\ri0\\widctlpar\\intbl\\faauto\\rin0\\lin0 {\\insrsid2 first\\cell second\\cell third");
    text.append(u"\\cell }\\pard \\ql \\li0\\ri0\\widctlpar\\intbl\\faauto\\rin0\\lin0 {\\insrsid2 ");
    return text.append(definition(place)).append(u"\\row }");
}

// ---- Floor: words with their numbers, braces and runs of text, each appended as it is found.

inline std::size_t tokenEnd(const std::u16string& text, std::size_t i) {
    if (text[i] == u'{' || text[i] == u'}') return i + 1;
    if (text[i] != u'\\') {
        while (i < text.size() && text[i] != u'\\' && text[i] != u'{' && text[i] != u'}') ++i;
        return i;
    }
    if (++i == text.size() || !velmor::isLetter(text[i])) return std::min(text.size(), i + 1);
    while (i < text.size() && velmor::isLetter(text[i])) ++i;
    while (i < text.size() && (text[i] == u'-' || (text[i] >= u'0' && text[i] <= u'9'))) ++i;
    return i < text.size() && text[i] == u' ' ? i + 1 : i;
}

inline std::u16string copied(const std::u16string& text) {
    std::u16string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = tokenEnd(text, i);
        result.append(text, i, end - i);
        i = end;
    }
    return result;
}

}  // namespace velmor::bench
