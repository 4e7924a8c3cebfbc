#include <gtest/gtest.h>

#include "rtf/clean/BlankLines.h"
#include "rtf/clean/Generators.h"
#include "rtf/clean/RemoveBackground.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/pages/SectionMarkers.h"
#include "rtf/tables/RowProtection.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

CleanOptions tolerantly() {
    CleanOptions options;
    options.tolerant = true;
    return options;
}

struct Case {
    const char16_t* before;
    const char16_t* after;
};

template <std::size_t count, typename Stage>
void check(const Case (&cases)[count], Stage stage) {
    for (const Case& row : cases) {
        std::u16string text = row.before;
        stage(text);
        EXPECT_EQ(toUtf8(text), toUtf8(row.after)) << toUtf8(row.before);
    }
}

TEST(GeneratorSectionWords, AreRemovedWithTheirWhiteSpaceOnly) {
#define G u"{\\*\\generator Korvane RTF Control 3}"
    const Case cases[] = {
        {G u"\\box\tx", G u"\tx"},  // readers see a tab
        {G u"\t\\box", G u"\t\\box"},
        {G u"\\marglsxn123456", G u""},  // 15 characters
        {G u"\\marglsxn1234567", G u"\\marglsxn1234567"},
        {u"{\\*\\generator Korvane RTF Control 3456789012345678901234567890123456}\\box",
         u"{\\*\\generator Korvane RTF Control 3456789012345678901234567890123456}"},
        {u"{\\*\\generator Korvane RTF Control 34567890123456789012345678901234567}\\box",
         u"{\\*\\generator Korvane RTF Control 34567890123456789012345678901234567}\\box"},
        {G u"\\titlepg 12345678\\b", G u"\\titlepg 12345678\\b"},  // up to the backslash
        {G u"\\brdrs \r\n\\cols-2\\b  ", G u"\\b"},
        {G u"{\\box}", G u"{\\box}"},
    };
#undef G
    check(cases, [](std::u16string& text) { Module1::RemoveGeneratorSectionWords(text); });
}

TEST(ExtractEmbeddedDocuments, LiftsWholeDocuments) {
    const Case cases[] = {
        {u"{\\rtf1 a{\\rtf1 b{\\rtf1 c}d}{\\RTF e}}", u"{\\rtf1 a#5##7#}|{\\rtf1 b#6#d}|{\\rtf1 c}|{\\RTF e}"},
        {u"{\\rtf1{\\rtf1 a}{\\rtf1 b{\\rtf1 c}d", u"{\\rtf1#5#{\\rtf1 b{\\rtf1 c}d|{\\rtf1 a}"},
        {u"{\\rtf1\\{\\rtf1 a}b{{\\rtf1\\{c\\}}}", u"{\\rtf1\\{\\rtf1 a}b{#5#}|{\\rtf1\\{c\\}}"},
        {u"{\\rtf1\\b{\\rtf1{\\*\\korvanenewheader}}x{\\rtf1 a{\\rtf1{\\*\\korvanenewfooter}}2}}",
         u"{\\rtf1\\b{\\*\\korvanenewheader}x#5#}|{\\rtf1 a{\\*\\korvanenewfooter}2}"},
        {u"{\\rtf1{\\rtf1{\\*\\korvanenewfooter} }}", u"{\\rtf1#5#}|{\\rtf1{\\*\\korvanenewfooter} }"},
    };
    check(cases, [](std::u16string& text) {
        TableCollection tables(u'#');
        Module1::ExtractEmbeddedDocuments(text, tables, {});
        for (const TableCollection::Document& document : tables.documents()) text += u"|" + document.text;
    });
}

TEST(RemoveBackground, ClosesTheGap) {
    const Case cases[] = {
        {u"{\\rtf1\\b{\\*\\background x}2}", u"{\\rtf1\\b 2}"},
        {u"a{\\*\\BACKGROUND{\\b}}b{\\*\\background", u"ab{\\*\\background"},
        {u"{\\*{\\*\\background}\\background y}z\\{\\*\\background}", u"z\\{\\*\\background}"},
        {u"{\\*{\\*\\background}\\background y{\\*\\background}", u"{\\*\\background y{\\*\\background}"},
    };
    check(cases, [](std::u16string& text) { Module1::RemoveBackground(text, {}); });
}

TEST(RemoveDuplicateGenerators, KeepsTheFirstOfEqualOnes) {
#define A u"{\\*\\generator A}"
#define B u"{\\*\\generator B}"
    const Case cases[] = {
        {A A B A A B, A B A B},
        {A u"\\b" A u"2", A u"\\b 2"},
        {A u"\\" A A u"{\\*\\generator A", A u"\\" A u"{\\*\\generator A"},
    };
#undef A
#undef B
    check(cases, [](std::u16string& text) { Module1::RemoveDuplicateGenerators(text); });
}

TEST(WordsStayApart, WhereARemovalWouldJoinThem) {
    const Case cases[] = {
        {u"{\\rtf1{\\rtf1\\par}World}", u"{\\rtf1\\par World}"},
        {u"{\\rtf1{\\rtf1\\fs20}24}", u"{\\rtf1\\fs20 24}"},
        {u"{\\rtf1{\\rtf1\\par} World}", u"{\\rtf1\\par  World}"},
        {u"{\\rtf1\\b{\\rtf1{\\rtf1 x}}y}", u"{\\rtf1\\b xy}"},
        {u"{\\rtf1{\\rtf12 a}{\\rtf b}}", u"{\\rtf1 2 a{\\rtf b}}"},
        {u"{\\rtf1{\\rtf1 a}{\\rtf1 b{\\rtf1 c}", u"{\\rtf1 a{\\rtf1 b{\\rtf1 c}"},
    };
    check(cases, [](std::u16string& text) { Module1::UnwrapNestedDocuments(text, {}); });
}

TEST(UnwrapNestedDocuments, TolerantKeepsTheWordsOfTheHost) {
    const Case cases[] = {
        {u"{\\rtf1 a{\\rtf1\\ansi\\deff0\\paperw9 b\\par}c}", u"{\\rtf1 a{b\\par}c}"},
        {u"{\\rtf1 a{\\rtf b}{\\RTF1 c}}", u"{\\rtf1 a{b}{c}}"},
        {u"{\\rtf1{\\rtf1 a}{\\rtf1 b{\\rtf1 c}", u"{\\rtf1{a}{\\rtf1 b{\\rtf1 c}"},
        {u"{\\rtf1{\\rtf1{\\ansi\\margl9 x}}}", u"{\\rtf1{{\\ansi\\margl9 x}}}"},
        {u"{\\rtf1{\\rtf1 C:\\\\}\\{}", u"{\\rtf1{C:\\\\}\\{}"},
        {u"{\\rtf1{\\rtf1\\bin3 }}}x}}", u"{\\rtf1{\\bin3 }}}x}}"},
        // Cyrillic bytes in a Latin host; fonts with a character set of their own decide.
        {u"{\\rtf1\\ansi{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}"
         u"{\\rtf1\\ansi\\ansicpg1251\\f0 \\'e4\\'41{\\f1 \\'e4}\\uc2\\'e5\\u1078\\'3f\\'e6\\uc0\\'e4}\\'e4}",
         u"{\\rtf1\\ansi{\\fonttbl{\\f0 A;}{\\f1\\fcharset204 B;}}"
         u"{\\f0 \\u1076?\\'41{\\f1 \\'e4}\\uc2\\u1077??\\u1078\\'3f\\'e6\\uc0\\u1076 }\\'e4}"},
        // The host's code page may follow tables; multi-byte characters stay.
        {u"{\\rtf1{\\colortbl;}\\ansicpg1251{\\rtf1\\'e4}}", u"{\\rtf1{\\colortbl;}\\ansicpg1251{\\u228?}}"},
        // The fallback characters of \\u are counted anew.
        {u"{\\rtf1\\uc2{\\rtf1 \\u9?x}y}", u"{\\rtf1\\uc2{\\uc1\\u9?x}y}"},
        {u"{\\rtf1{\\rtf1\\ansicpg932\\'83\\'65}}", u"{\\rtf1{\\'83\\'65}}"},
        // A row takes no text that precedes its document; a page break is not text.
        {u"{\\rtf1 a{\\rtf1{\\b}\\trowd\\cellx9\\intbl b\\cell\\row}c}",
         u"{\\rtf1 a\\par{{\\b}\\trowd\\cellx9\\intbl b\\cell\\row}c}"},
        {u"{\\rtf1{\\b a{\\footnote\\par}}{\\rtf1\\uc2{\\rtf1\\intbl b\\cell}\\trowd}}",
         u"{\\rtf1{\\b a{\\footnote\\par}}{\\uc2\\par{\\uc1\\intbl b\\cell}\\trowd}}"},
        {u"{\\rtf1 a{\\rtf1\\trowd b\\row\\sect c}}", u"{\\rtf1 a\\par{\\trowd b\\row\\sect c}}"},
        {u"{\\rtf1 a\\par\\page{\\rtf1\\trowd}{\\rtf1\\par\\trowd}{\\rtf1 b\\trowd}{\\rtf1 b\\par}}",
         u"{\\rtf1 a\\par\\page{\\trowd}{\\par\\trowd}{b\\trowd}{b\\par}}"},
        // Paragraphs in a cell stay in it.
        {u"{\\rtf1\\trowd{\\rtf1\\pard a\\pard\\qc\\intbl b}\\cell\\row{\\rtf1\\pard c}\\pard\\itap2{\\rtf1\\pard d}}",
         u"{\\rtf1\\trowd{\\pard\\intbl a\\pard\\qc\\intbl b}\\cell\\row{\\pard c}\\pard\\itap2{\\pard\\intbl\\itap2 "
         u"d}}"},
        // Words of the whole document are removed; the host's stay.
        {u"{\\rtf1{\\info a}{\\rtf1{\\info{\\title b}}{\\b{\\info c}}{\\footnote d}\\margmirror e}\\margmirror}",
         u"{\\rtf1{\\info a}{{\\b{\\info c}}{\\footnote d}e}\\margmirror}"},
    };
    check(cases, [](std::u16string& text) { Module1::UnwrapNestedDocuments(text, tolerantly()); });
}

TEST(MergePageBreaks, TakeThePageOfTheNextDocument) {
#define M u"{\\*\\korvanemergepagebreak}"
    const Case cases[] = {
        {M u"\\sectd\\lndscpsxn\\pgwsxn11906\\pghsxn16838 ",
         u"\\sect\\lndscpsxn\\pgwsxn16838\\pghsxn11906\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0"
         u"\\sectd\\lndscpsxn\\pgwsxn11906\\pghsxn16838 "},
        // The end of the section is not that of a number, and a word with that beginning counts.
        {M u"\\sectd\\pgwsxn9\\portrait\\pghsxn5\\page\\sect",
         u"\\sect\\pgwsxn0\\pghsxn9\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0"
         u"\\sectd\\pgwsxn9\\portrait\\pghsxn5\\page\\sect"},
        {M u"\\paperw9\\sectd\\pgwsxnx7 ",
         u"\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0\\paperw9\\sectd\\pgwsxnx7 "},
        {M u"\\sectd\\pgwsxn5\\sect x", M u"\\sectd\\pgwsxn5\\sect x"},  // no page ends
        // Without a document, and without the end of the header.
        {u"{\\header a}" M u"x", u"{\\header a}\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0x"},
        // No section begins in a row.
        {u"\\trowd a" M u"b\\row\\intbl a" M u"b\\row", u"\\trowd a\\par b\\row\\intbl a\\par b\\row"},
        {u"\\intbl a\\pard" M u"\\pard",
         u"\\intbl a\\pard\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0\\pard"},
    };
    check(cases, [](std::u16string& text) {
        JoinedPart whole;
        Module1::ApplyMergePageBreaks(text, {}, true, whole);
    });
    const Case tolerant[] = {
        {M u"\\sectd\\cols2 x\\sect y",
         u"\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800"
         u"\\margtsxn1440\\margbsxn1440\\pard\\plain\\uc1\\cols2 x\\sect y"},
        {M u"\\fet0\\sectd \\cols2",
         u"\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800"
         u"\\margtsxn1440\\margbsxn1440\\pard\\plain\\uc1\\fet0\\cols2"},
        {M u"a\\sect\\sectd b",
         u"\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800"
         u"\\margtsxn1440\\margbsxn1440\\pard\\plain\\uc1a\\sect\\sectd b"},
        // Later sections return to their document's page, none continues the previous page, and a table ends.
        {u"\\paperw9\\sectd\\sbknone a\\row}" M u"\\margb7\\sectd\\sbkcol b\\sect\\sectd\\sbknone c",
         u"\\paperw9\\sectd a\\row}\\pard\\par\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800"
         u"\\margtsxn1440\\margbsxn7\\pard\\plain\\uc1\\margb7b\\sect\\sectd\\pgwsxn12240\\margbsxn7\\sbknone c"},
        {M u"a\\sect\\sectd\\pgwsxn9 b",
         u"\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800"
         u"\\margtsxn1440\\margbsxn1440\\pard\\plain\\uc1a\\sect\\sectd\\pgwsxn9 b"},
    };
#undef M
    check(tolerant, [](std::u16string& text) {
        JoinedPart whole;
        Module1::ApplyMergePageBreaks(text, tolerantly(), true, whole);
    });
}

TEST(SectionMarkers, DescribeTheirSection) {
#define S u"{\\*\\korvanesection"
#define D u"{\\*\\korvanecmplete"
#define PAGE(left) u"\\pgwsxn0\\pghsxn0\\marglsxn" #left "\\margrsxn0\\margtsxn0\\margbsxn0"
    const Case cases[] = {
        {u"\\page" S u"\\paperheight21\\paperwidth16838\\marginl50}",
         u"\\sect\\pgwsxn16838\\pghsxn11906\\marglsxn28346\\margrsxn0\\margtsxn0\\margbsxn"
         u"0" D u"\\paperheight21\\paperwidth16838\\marginl50}"},
        {u"\\page\\page" S u"\\portrait}" S u"\\landscape}",
         u"\\sect\\lndscpsxn" PAGE(0) u"\\sect" PAGE(0) D u"\\portrait}" D u"\\landscape}"},
        {u"\\sectd" S u"\\marginl1000}" S u"\\landscape}",
         u"\\sectd\\lndscpsxn" PAGE(1000) PAGE(1000) D u"\\marginl1000}" D u"\\landscape}"},
        {u"\\sectd" S u"}\\sectd" S u"}", u"\\sectd" PAGE(0) D u"}\\sectd" PAGE(0) D u"}"},
        {u"\\page" S u"\\paperheight nan}", u"\\page" S u"\\paperheight nan}"},
        {u"\\page" S u"\\paperheight\\landscape}", u"\\page" S u"\\paperheight\\landscape}"},
    };
    check(cases, [](std::u16string& text) { Module1::ApplySectionMarkers(text, {}); });
    const Case tolerant[] = {
        {u"\\page" S u"}{\\sectd\\cols2 x\\sect\\sectd y}",
         u"\\sect\\sectd\\pgwsxn12240\\pghsxn15840\\marglsxn1800\\margrsxn1800\\margtsxn1440\\margbsxn"
         u"1440" D u"}{\\cols2 x\\sect\\sectd y}"},
    };
#undef S
#undef D
#undef PAGE
    check(tolerant, [](std::u16string& text) { Module1::ApplySectionMarkers(text, tolerantly()); });
}

TEST(TableRows, KeepTogetherUnlessTheySaySo) {
    const Case cases[] = {
        {u"\\trkeep\\trowd \\row\\row\\trkeep\\trowd\\row",
         u"\\trkeep\\trowd \\trkeep\\row\\row\\trkeep\\trowd\\trkeep\\row"},
        {u"\\trowd\\trkeepfollow\\row\\\\trowd\\row", u"\\trowd\\trkeepfollow\\row\\\\trowd\\row"},
        {u"\\trowd\\trkeep\\rowd\\trowd\\row", u"\\trowd\\trkeep\\rowd\\trowd\\trkeep\\row"},
    };
    check(cases, [](std::u16string& text) { Module1::ProtectTableRows(text, {}); });
}

TEST(TableRows, TolerantKeepsTheRowsAroundATableApart) {
    const std::u16string identity = u"{01234567-0123-0123-0123-0123456789ab}}";
    const std::u16string inner = u"{\\*\\korvane\\starttable" + identity + u"\\trowd x\\cell";
    const std::u16string behind = u"\\row {\\*\\korvane\\endtable" + identity;
    std::u16string text = u"\\trowd " + inner + behind + u"\\cell\\row";
    Module1::ProtectTableRows(text, tolerantly());
    EXPECT_EQ(toUtf8(text), toUtf8(u"\\trowd " + inner + u"\\trkeep" + behind + u"\\cell\\trkeep\\row"));
}

TEST(BlankLines, CollapseToOneLineEnd) {
    const Case cases[] = {{u"\r\n\r\n\r\na\n\r\n\r\n\r", u"\r\na\n\r\n\r"}};
    check(cases, [](std::u16string& text) { Module1::CollapseBlankLines(text, {}); });
}

TEST(BlankLines, TolerantKeepsTheDataOfPictures) {
    std::u16string text = u"a\r\n\r\n\\bin6 \r\n\r\n\r\n\r\n\r\nb";
    Module1::CollapseBlankLines(text, tolerantly());
    EXPECT_EQ(toUtf8(text), toUtf8(u"a\r\n\\bin6 \r\n\r\n\r\n\r\nb"));
}

}  // namespace
}  // namespace velmor
