#include <gtest/gtest.h>

#include "Merged.h"

namespace velmor {
namespace {

using test::merged;
using test::narrow;

const std::u16string defaultColours =
    u"{\\colortbl;\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;\\red0\\green255\\blue0;"
    u"\\red0\\green0\\blue255;}";

struct FontCase {
    const char* what;
    std::u16string table;   // the host's, between "{\fonttbl" and "}"
    std::u16string merged;  // likewise
    std::u16string body;
    std::u16string mergedBody;
};

TEST(MergeFonts, NumbersTheHostsFontsInOrder) {
    const FontCase cases[] = {
        {"plain", u"{\\f0\\fswiss Arial;}{\\f3\\froman\\fcharset0 Times New Roman;}",
         u"\r\n{\\f0\\fswiss Arial;}\r\n{\\f1\\froman\\fcharset0 Times New Roman;}", u"\\f3 a\\f0\\b\\f3{b}",
         u"\\f1 a\\f0\\b\\f1{b}"},
        {"on lines of their own", u"\r\n{\\f5\\fswiss Arial;}\r\n{\\f6\\fnil Courier;}\n",
         u"\r\n{\\f0\\fswiss Arial;}\r\n{\\f1\\fnil Courier;}", u"\\f6\r\nx", u"\\f1\r\nx"},
        {"equal names", u"{\\f0 Arial;}{\\f1\\fcharset238 ARIAL;}{\\f2 B;}", u"\r\n{\\f0 Arial;}\r\n{\\f1 B;}",
         u"\\f1 x\\f2 y", u"\\f0 x\\f1 y"},
        {"inner groups", u"{\\f2\\froman{\\*\\panose 020}Times{\\*\\falt Serif;};}{\\f3\\froman Times;}",
         u"\r\n{\\f0\\froman{\\*\\panose 020}Times{\\*\\falt Serif;};}", u"\\f2 a\\f3 b", u"\\f0 a\\f0 b"},
        {"theme fonts", u"{\\flomajor\\f31500\\fbidi Cambria;}{\\f1 Arial;}",
         u"\r\n{\\flomajor\\f0\\fbidi Cambria;}\r\n{\\f1 Arial;}", u"\\f31500 a\\f1 b", u"\\f0 a\\f1 b"},
        {"entries that are no groups", u"\\f4\\fnil\\fcharset0 Arial;\\f5 B;",
         u"\r\n{\\f0\\fnil\\fcharset0 Arial;}\r\n{\\f1 B;}", u"\\f5 b", u"\\f1 b"},
        {"no end of the name", u"{\\f7 Arial}", u"\r\n{\\f0 Arial;}", u"\\f7 b", u"\\f0 b"},
        {"no name", u"{\\f7\\fnil;}{\\f8\\fswiss;}", u"\r\n{\\f0\\fnil;}\r\n{\\f1\\fswiss;}", u"\\f8 b", u"\\f1 b"},
        {"not a font", u"{\\*\\x y;}stray;{\\f1 A;}", u"\r\n{\\f0 A;}", u"\\f1 b", u"\\f0 b"},
        {"empty", u"", u"", u"\\f1 b", u"\\f1 b"},
        {"large and negative numbers", u"{\\f70000 A;}{\\f-5 B;}{\\f1234567 C;}",
         u"\r\n{\\f0 A;}\r\n{\\f1 B;}\r\n{\\f2 C;}", u"\\f70000 a\\f-5 b\\f1234567 c", u"\\f0 a\\f1 b\\f2 c"},
        {"only whole references", u"{\\f9 A;}{\\f91 B;}", u"\r\n{\\f0 A;}\r\n{\\f1 B;}",
         u"\\f91 a\\f9 b\\fs9 \\af9 \\deff9 \\field9 \\f09 \\f9;\\f9\n\\\\f9 \\F9 x",
         u"\\f1 a\\f0 b\\fs9 \\af9 \\deff9 \\field9 \\f09 \\f9;\\f9\n\\\\f9 \\f9 x"},
        {"every other adjacent one", u"{\\f9 A;}{\\f8 B;}", u"\r\n{\\f0 A;}\r\n{\\f1 B;}",
         u"\\f9\\f9\\f9\\f9\\f8\\f9\\f9 x", u"\\f0\\f9\\f0\\f9\\f1\\f0\\f0 x"},
    };
    for (const FontCase& c : cases) {
        const std::u16string text = u"{\\rtf1{\\fonttbl" + c.table + u"}" + c.body + u"}";
        const std::u16string expected =
            u"{\\rtf1" + defaultColours + u"{\\fonttbl" + c.merged + u"}" + c.mergedBody + u"}";
        EXPECT_EQ(narrow(merged(text)), narrow(expected)) << c.what;
    }
}

TEST(MergeFonts, LiftedFontsJoinTheHosts) {
    EXPECT_EQ(
        narrow(merged(u"{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f3 Times New Roman;}}\\f3 a"
                      u"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset2 Times New Roman;}{\\f1 New;}}\\f0 b\\f1}\\f0 c}")),
        narrow(u"{\\rtf1" + defaultColours +
               u"{\\fonttbl\r\n{\\f0 Arial;}\r\n{\\f1 Times New Roman;}\r\n{\\f2 New;}}\\f1 a"
               u"{\\rtf1\\ansi\\f1 b\\f2}\\f0 c}"));
    EXPECT_EQ(narrow(merged(u"{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}x{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}text}}")),
              narrow(u"{\\rtf1" + defaultColours + u"\\ansi{\\fonttbl\r\n{\\f0 A;}}x{\\rtf1\\ansi text}}"));
}

}  // namespace
}  // namespace velmor
