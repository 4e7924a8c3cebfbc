#include <gtest/gtest.h>

#include "Merged.h"
#include "rtf/merge/NumberMap.h"

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
        {"on lines of their own", u"\r\n{\\f5\\fswiss Arial;}\r\n{\\f6\\fnil Courier;}\n",
         u"\r\n{\\f0\\fswiss Arial;}\r\n{\\f1\\fnil Courier;}", u"\\f6\r\nx", u"\\f1\r\nx"},
        {"inner groups", u"{\\f2\\froman{\\*\\panose 020}Times{\\*\\falt Serif;};}{\\f3\\froman Times;}",
         u"\r\n{\\f0\\froman{\\*\\panose 020}Times{\\*\\falt Serif;};}", u"\\f2 a\\f3 b", u"\\f0 a\\f0 b"},
        {"theme fonts", u"{\\flomajor\\f31500\\fbidi Cambria;}{\\f1 Arial;}",
         u"\r\n{\\flomajor\\f0\\fbidi Cambria;}\r\n{\\f1 Arial;}", u"\\f31500 a\\f1 b", u"\\f0 a\\f1 b"},
        {"entries that are not groups", u"\\f4\\fnil\\fcharset0 Arial;\\f5 B;",
         u"\r\n{\\f0\\fnil\\fcharset0 Arial;}\r\n{\\f1 B;}", u"\\f5 b", u"\\f1 b"},
        {"a number of two fonts", u"{\\f9 A;}{\\f9 B;}", u"\r\n{\\f0 A;}\r\n{\\f1 B;}", u"\\f9 b", u"\\f0 b"},
        {"no end of the name", u"{\\f7 Arial}", u"\r\n{\\f0 Arial;}", u"\\f7 b", u"\\f0 b"},
        {"no name", u"{\\f7\\fnil;}{\\f8\\fswiss;}", u"\r\n{\\f0\\fnil;}\r\n{\\f1\\fswiss;}", u"\\f8 b", u"\\f1 b"},
        {"not a font", u"{\\*\\x y;}stray;{\\f1 A;}", u"\r\n{\\f0 A;}", u"\\f1 b", u"\\f0 b"},
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

struct ColourCase {
    const char* what;
    bool tolerant;
    std::u16string table;   // the host's, with its braces
    std::u16string merged;  // likewise
    std::u16string body;
    std::u16string mergedBody;
};

TEST(MergeColours, RenumbersTheHostsColours) {
    const ColourCase cases[] = {
        {"across line breaks", true, u"{\\colortbl;\\red1;\r\n\\red1;\r\n\\red2;\r\n}", u"{\\colortbl;\\red1;\\red2;}",
         u"\\cf2 x\\clcbpatraw3 y", u"\\cf1 x\\clcbpatraw2 y"},
        {"a blank before the first", false, u"{\\colortbl ;\\red1;}", u"{\\colortbl;\\red1;}", u"\\cf1 x", u"\\cf1 x"},
        {"without the automatic colour", false, u"{\\colortbl\r\n\\red7;\\red8;}", u"{\\colortbl;\\red7;\\red8;}",
         u"\\cf0 x\\cf1 y", u"\\cf1 x\\cf2 y"},
        {"a line break after the automatic colour", false, u"{\\colortbl;\r\n\\red7;\\red8;}",
         u"{\\colortbl;\\red7;\\red8;}", u"\\cf2 x", u"\\cf2 x"},
        {"an escaped brace", false, u"{\\colortbl;\\red7;\\}", u"{\\colortbl;\\red7;}", u"\\cf1 x", u"\\cf1 x"},
        {"a group in it", true, u"{\\colortbl;\\red7;{\\red8;}", u"{\\colortbl;\\red7;}", u"x}y", u"{x}y"},
        {"empty", false, u"{\\colortbl;}", defaultColours, u"\\cf1 x", u"\\cf1 x"},
        {"no end of the last one", false, u"{\\colortbl;\\red7;\\red8}", u"{\\colortbl;\\red7;}", u"\\cf2 x",
         u"\\cf2 x"},
        {"a blank between two", false, u"{\\colortbl;\\red7; ;\\red8;}", u"{\\colortbl;\\red7;}", u"\\cf2 x",
         u"\\cf2 x"},
        {"capitals", false, u"{\\colortbl;\\red7;\\red7;}", u"{\\colortbl;\\red7;}", u"\\CFpat2 \\CBpat2 \\CFpatx2 ",
         u"\\cfpat1 \\cbpat1 \\cfpatx2 "},
        {"words that begin alike", false, u"{\\colortbl;\\red7;\\red7;}", u"{\\colortbl;\\red7;}",
         u"\\cf2\\cfpat2\\chcfpat2\\clcfpat2\\cfx2 \\cf22 ", u"\\cf1\\cfpat1\\chcfpat1\\clcfpat1\\cfx2 \\cf22 "},
    };
    for (const ColourCase& c : cases) {
        const std::u16string text = u"{\\rtf1\\x" + c.table + c.body + u"}";
        const std::u16string expected = u"{\\rtf1{\\fonttbl}\\x" + c.merged + c.mergedBody + u"}";
        EXPECT_EQ(narrow(merged(text, c.tolerant)), narrow(expected)) << c.what;
    }
}

TEST(MergeTables, DistinguishesManyFontsAndColours) {
    constexpr int fonts = 70000;
    constexpr int colours = 657;
    std::u16string table = u"{\\fonttbl";
    for (int i = 0; i < fonts; ++i) table += u"{\\f" + decimal(fonts - i) + u" F" + decimal(i) + u";}";
    std::u16string palette = u"{\\colortbl;";
    for (int i = 0; i < colours; ++i) palette += u"\\red" + decimal(i) + u"\\green0\\blue0;";
    const std::u16string document = u"{\\rtf1" + table + u"}" + palette + u"}";
    const std::u16string text = merged(document + u"\\f1 a\\f32761 b\\cf657 c{\\rtf1{\\fonttbl{\\f0 New;}}" +
                                       u"{\\colortbl;\\red9\\green9\\blue9;}\\f0\\cf1 d}}");
    EXPECT_EQ(narrow(text.substr(text.rfind(u";}") + 2)), "\\f69999 a\\f37239 b\\cf657 c{\\rtf1\\f70000\\cf658 d}}");
    EXPECT_NE(text.find(u"\r\n{\\f69999 F69999;}\r\n{\\f70000 New;}}"), std::u16string::npos);
}

TEST(MergeTables, TolerantMergingKeepsForeignText) {
    const std::pair<std::u16string, std::u16string> cases[] = {
        // Bytes of a multi-byte code page stay, in fonts with its character set.
        {u"{\\fonttbl{\\f0 A;}}x{\\rtf1\\ansicpg932\\deff0{\\fonttbl{\\f0\\fcharset1 A;}{\\f1\\fnil\\fcharset0 "
         u"B;}{\\f2 "
         u"C;}}\\f1\\'83}",
         u"{\\fonttbl\r\n{\\f0 A;}\r\n{\\f1\\fcharset128 A;}\r\n{\\f2\\fnil\\fcharset0 B;}\r\n{\\f3\\fcharset128 C;}}"
         u"x{\\rtf1\\pard\\plain\\ansicpg932\\f1\\f2\\'83}"},
        // Bytes in tables become characters.
        {u"\\ansicpg950{\\fonttbl}{\\stylesheet{\\s0 N;}}x{\\rtf1{\\stylesheet{\\s1 "
         u"\\'dc\\u228\\'e4\\'41\\'e4;}}\\'e4}",
         u"\\ansicpg950{\\fonttbl}{\\stylesheet\r\n{\\s0 N;}\r\n{\\s1 "
         u"\\u220?\\u228\\'e4\\'41\\u228?;}}x{\\rtf1\\pard\\plain\\'e4}"},
        // A host without fonts keeps its font.
        {u"\\deff3\\plain x{\\rtf1\\deff0{\\fonttbl{\\f0 A;}}\\plain y}",
         u"{\\fonttbl\r\n{\\f0 Times New Roman;}\r\n{\\f1 A;}}\\deff0\\plain x{\\rtf1\\pard\\plain\\f1\\plain\\f1 y}"},
        // In a host without a default font each document's is named; without \\deff it is that of readers.
        {u"{\\fonttbl{\\f5 A;}}x{\\rtf1{\\fonttbl{\\f0 A;}}y\\plain}{\\rtf1\\deff0{\\fonttbl{\\f0 A;}}\\plain z}"
         u"{\\rtf1\\ansicpg932{\\fonttbl}y}",
         u"{\\fonttbl\r\n{\\f0 A;}\r\n{\\f1 Times New Roman;}\r\n{\\f2\\fcharset128 Times New Roman;}}"
         u"x{\\rtf1\\pard\\plain\\f1y\\plain\\f1}{\\rtf1\\pard\\plain\\f0\\plain\\f0 z}"
         u"{\\rtf1\\pard\\plain\\f2\\ansicpg932y}"},
        // A table that precedes \\deff does not hide it.
        {u"\\deff0{\\fonttbl{\\f0 A;}}{\\rtf1{\\fonttbl{\\f0 C;}{\\f1 B;}}\\deff1 x}",
         u"\\deff0{\\fonttbl\r\n{\\f0 A;}\r\n{\\f1 C;}\r\n{\\f2 B;}}{\\rtf1\\pard\\plain\\f2 x}"},
        // The host's theme fonts keep their numbers, and equal ones of other documents are those.
        {u"{\\fonttbl{\\f3 A;}{\\fbiminor\\f31507 A;}}\\stshfhich31507{\\rtf1\\deff0{\\fonttbl{\\f0 B;}"
         u"{\\fbiminor\\f31507 A;}{\\fhiminor\\f31506 A;}}\\f31507\\f31506 x}",
         u"{\\fonttbl\r\n{\\f0 A;}\r\n{\\fbiminor\\f31507 A;}\r\n{\\f1 B;}}\\stshfhich31507"
         u"{\\rtf1\\pard\\plain\\f1\\f31507\\f0 x}"},
        // A size in the host's header is not that of \\plain.
        {u"\\deff0\\fs20{\\fonttbl{\\f0 A;}}x{\\rtf1\\deff0{\\fonttbl{\\f0 A;}}y\\plain z\\plain\\fs18}",
         u"\\deff0\\fs20{\\fonttbl\r\n{\\f0 A;}}x{\\rtf1\\pard\\plain\\fs24\\f0y\\plain\\fs24 z\\plain\\fs18}"},
        // No table style pads the first row of another document.
        {u"{\\fonttbl}\\trowd\\cellx9\\cell\\row{\\rtf1{\\stylesheet{\\*\\ts1\\tsrowd\\trpaddl9 T;}}\\trowd\\row}"
         u"{\\rtf1\\trowd\\trgaph9\\cellx9\\row}",
         u"{\\fonttbl}{\\stylesheet\r\n{\\*\\ts1\\tsrowd\\trpaddl9 T;}}\\trowd\\trpaddl0\\trpaddr0\\cellx9\\cell\\row"
         u"{\\rtf1\\pard\\plain\\trowd\\row}{\\rtf1\\trowd\\trgaph9\\cellx9\\row}"},
        // A fragment takes the formatting of its place.
        {u"{\\fonttbl{\\f5 A;}}\\b x{\\rtf1{\\colortbl;}y}", u"{\\fonttbl\r\n{\\f0 A;}}\\b x{\\rtf1y}"},
        {u"{\\fonttbl{\\f5 A;}}\\b x{\\rtf1\\marglsxn9 y}",
         u"{\\fonttbl\r\n{\\f0 A;}\r\n{\\f1 Times New Roman;}}\\b x{\\rtf1\\pard\\plain\\f1\\marglsxn9 y}"},
        // So has a style that names none; one that is based on another may inherit it.
        {u"\\deff0{\\fonttbl{\\f0 A;}}x{\\rtf1\\deff1{\\fonttbl{\\f1 B;}{\\f2 C;}}"
         u"{\\stylesheet{\\s1 P;}{\\s2\\sbasedon1 Q;}{\\s3\\f2 R;}}y}",
         u"\\deff0{\\fonttbl\r\n{\\f0 A;}\r\n{\\f1 B;}\r\n{\\f2 C;}}{\\stylesheet\r\n{\\s1\\f1 P;}\r\n{\\s2\\sbasedon1 "
         u"Q;}"
         u"\r\n{\\s3\\f2 R;}}x{\\rtf1\\pard\\plain\\f1y}"},
        // Default tabs of another distance than the host's are written into the paragraphs, after their own ones.
        {u"\\margl9000\\margr0{\\fonttbl{\\f0 A;}}\\deff0{\\rtf1\\deff0{\\fonttbl{\\f0 A;}}\\deftab1080\\tab"
         u"\\pard\\li1500\\tx2500 x{\\tab}\\pard y{\\pard z}\\tab\\pard\\ls1 a\\pard\\ls1\\li9 b}",
         u"\\margl9000\\margr0{\\fonttbl\r\n{\\f0 "
         u"A;}}\\deff0{\\rtf1\\pard\\tx1080\\tx2160\\tx3240\\plain\\f0\\deftab1080\\tab"
         u"\\pard\\li1500\\tx2500\\tx3240 x{\\tab}\\pard\\tx1080\\tx2160\\tx3240 y{\\pard z}\\tab\\pard\\ls1 a"
         u"\\pard\\ls1\\li9\\tx1080\\tx2160\\tx3240 b}"},
        {u"{\\fonttbl}x{\\rtf1\\paperw9 y}", u"{\\fonttbl}x{\\rtf1\\pard\\plain\\paperw9 y}"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(narrow(merged(u"{\\rtf1" + text + u"}", true)),
                  narrow(u"{\\rtf1" + defaultColours + expected + u"}"));
    }
    // Colours of the host's theme are the host's alone.
    EXPECT_EQ(narrow(merged(
                  u"{\\rtf1{\\colortbl;\\caccentone\\red1;}{\\rtf1{\\colortbl;\\caccentone\\ctint255\\red2;\\ctextone;}"
                  u"\\cf1}}",
                  true)),
              "{\\rtf1{\\fonttbl}{\\colortbl;\\caccentone\\red1;\\red2;\\ctextone;}{\\rtf1\\cf2}}");
}

TEST(MergeTables, TolerantMergingKeepsDefaultsAndCharacterSets) {
    EXPECT_EQ(
        narrow(
            merged(u"{\\rtf1\\deff3{\\*\\x\\bin21 {\\fonttbl;{\\colortbl;}{\\fonttbl{\\f3 Host;}}\\plain\\f3;\\f3\\f3 a"
                   u"{\\rtf1\\ansi\\deff1{\\fonttbl{\\f0\\fcharset0 X;}{\\f1\\fcharset2 X;}}"
                   u"\\plain b\\plain\\b\\f0\\af1\\pnf1\n{\\plain\\f1}{\\bin6 \\f1\\f1\\f1}}"
                   u"{\\rtf1\\deff0{\\fonttbl{\\f0 Y;}}c}}",
                   true)),
        narrow(
            u"{\\rtf1" + defaultColours +
            u"\\deff0{\\*\\x\\bin21 {\\fonttbl;{\\colortbl;}{\\fonttbl\r\n{\\f0 Host;}\r\n{\\f1\\fcharset0 "
            u"X;}\r\n{\\f2\\fcharset2 X;}\r\n{\\f3 Y;}}"
            u"\\plain\\f0;\\f0\\f0 a"
            u"{\\rtf1\\pard\\plain\\ansi\\f2\\plain\\f2 b\\plain\\b\\f1\\af2\\pnf2\n{\\plain\\f2}{\\bin6 \\f1\\f1\\f2}}"
            u"{\\rtf1\\pard\\plain\\f3c}}"));
}

TEST(MergeTables, BadTablesLoseNothing) {
    const std::u16string texts[] = {
        u"{\\rtf1{\\fonttbl{\\f0 Arial;}\\f0 text",
        u"{\\rtf1{\\fonttbl{\\f0 Arial;\\f0 text}",
        u"{\\rtf1{\\colortbl;\\red0 text",
        u"{\\rtf1{\\stylesheet{\\s1 a;}text",
        u"{\\rtf1{\\*\\listtable{\\list text",
        u"{\\rtf1\\{\\fonttbl\\}{text}\\{\\colortbl;}",
        u"{\\rtf1 text",
        u"{\\rtf1",
        u"{\\rtf",
        u"text",
        u"",
    };
    for (const std::u16string& source : texts) {
        for (std::size_t cut = 0; cut <= source.size(); ++cut) {
            const std::u16string text = source.substr(0, cut);
            const std::size_t opening = text.find(u"{\\rtf1") == 0 ? 6 : text.find(u"{\\rtf") == 0 ? 5 : text.size();
            const std::u16string result = merged(text);
            EXPECT_TRUE(result.ends_with(text.substr(opening))) << narrow(text) << '\n' << narrow(result);
        }
    }
}

TEST(MergeTables, BothFormsOfATableAreRemoved) {
    EXPECT_EQ(narrow(merged(u"{\\rtf1{\\upr\r\n{\\fonttbl{\\f3 A;}}{\\*\\ud{\\fonttbl{\\f3 A;}}}}\\f3 x}")),
              narrow(u"{\\rtf1" + defaultColours + u"{\\fonttbl\r\n{\\f0 A;}}\\f0 x}"));
}

}  // namespace
}  // namespace velmor
