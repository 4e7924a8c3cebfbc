#pragma once

#include <cstdint>

#include "Pieces.h"
#include "RtfText.h"
#include "platform/MemoryServices.h"
#include "rtf/clean/CleanRTF.h"

namespace velmor::test {

// Cleans an RTF text made of pieces that the bytes select. Empty, or the text, unless it grows within bounds, no
// placeholder remains, and balanced braces stay balanced.
inline std::u16string faultOfCleaning(const std::uint8_t* data, std::size_t size) {
    static const auto pieces = piecesOf(
        u"{|}|}|\\|\\'e4|\\u1076?| |\r\n|x|1|;|{\\rtf1|{\\rtf1\\ansi\\ansicpg1251\\deff1 |{\\rtf |"
        u"{\\rtf1{\\*\\korvanenewheader}}|{\\*\\korvanenewfooter}|{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}|"
        u"{\\fonttbl|{\\f3 C;}|{\\colortbl;\\red9;}|{\\colortbl|\\f0|\\f1\\cf1 |\\plain|{\\stylesheet{\\s1 A;}}|"
        u"\\s1|{\\*\\listtable{\\list\\listid7}}|{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}}|\\ls1|"
        u"{\\*\\generator Korvane RTF Control}|\\marglsxn9|{\\*\\background|"
        u"{\\*\\korvanesection\\landscape\\paperheight21}|{\\*\\korvanemergepagebreak}|\\sectd|\\sect|\\page|"
        u"\\paperw9 |{\\header h}|\\trowd\\irow0|\\cell|\\cellx9|\\lastrow\\row |\\intbl|\\itap2|\\par|\\pard|"
        u"{\\*\\nesttableprops\\trowd\\nestrow}|{\\*\\korvane\\starttable{01234567-0123-0123-0123-0123456789ab}}|"
        u"{\\*\\korvane\\endtable{01234567-0123-0123-0123-0123456789ab}}|"
        u"{\\*\\korvane\\starttable{01234567-0123-0123-0123-0123456789ac}}|"
        u"{\\*\\korvane\\endtable{01234567-0123-0123-0123-0123456789ac}}|{\\fonttbl{\\f0\\fnil;}}|"
        u"{\\colortbl;\\red0|{\\*\\korvanesection\\landscape}|\\lastrow|\\row");
    if (size < 1) return {};
    CleanOptions options;
    options.mergeMode = (data[0] & 1) != 0;
    options.tolerant = (data[0] & 2) != 0;
    std::u16string text = u"{\\rtf1";
    for (std::size_t i = 1; i < size; ++i) text += pieces[data[i] % pieces.size()];

    platform::MemoryServices machine;
    std::u16string result = text;
    Module1::CleanRTFText(result, options, machine);
    const bool bounded = result.size() < 100 * text.size() + 4000;
    const bool ownsNothing = result.find(u'\ufdd0') == result.npos;
    const bool balanced = !options.tolerant || RtfText(result).isBalanced() || !RtfText(text).isBalanced();
    return bounded && ownsNothing && balanced ? u"" : text;
}

}  // namespace velmor::test
