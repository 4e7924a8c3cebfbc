#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "LiteralCleaning.h"
#include "Pieces.h"
#include "Seed.h"
#include "rtf/clean/BlankLines.h"
#include "rtf/clean/RemoveBackground.h"
#include "rtf/clean/RemoveDuplicateGenerators.h"
#include "rtf/clean/RemoveGeneratorSectionWords.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/MergePageBreaks.h"
#include "rtf/pages/SectionMarkers.h"
#include "rtf/tables/RowProtection.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

constexpr char16_t mark = 0xFDD0;

CleanOptions tolerantly() {
    CleanOptions options;
    options.tolerant = true;
    return options;
}

// ---- Against the steps

struct Duel {
    const char* stage;
    const char16_t* pieces;
    std::function<void(std::u16string&)> fast;
    std::function<void(test::LiteralCleaning&)> literal;
};

constexpr const char16_t* plainPieces = u"{|}|\\|\\{|\\}|\\b|\\fs20|\\u-3 |x|7|-| |\r\n";

const Duel duels[] = {
    {"ExtractEmbeddedDocuments",
     u"{\\rtf1 |{\\rtf1|{\\rtf|{\\RTF1|{\\rtf1{\\*\\korvanenewheader}}|{\\rtf1{\\*\\korvanenewfooter}}|"
     u"{\\rtf1{\\*\\korvanenewfooter} }|}|}",
     [](std::u16string& text) {
         TableCollection tables(mark);
         Module1::ExtractEmbeddedDocuments(text, tables, {});
         for (const TableCollection::Document& document : tables.documents()) text += u"|" + document.text;
     },
     [](test::LiteralCleaning& literal) {
         literal.extract(mark);
         for (const std::u16string& document : literal.documents) literal.text += u"|" + document;
     }},
    {"UnwrapNestedDocuments", u"{\\rtf1 |{\\rtf1|{\\rtf|{\\RTF1|{\\rtf12|}|}|}",
     [](std::u16string& text) { Module1::UnwrapNestedDocuments(text, {}); },
     [](test::LiteralCleaning& literal) { literal.unwrap(); }},
    {"ApplyMergePageBreaks",
     u"{\\*\\korvanemergepagebreak}|{\\*\\korvanemergepagebreak}|\\sectd|\\sect|\\sect |\\page|\\page |"
     u"\\pagebb|\\paperh15840|\\paperw12240\n|\\paperh 5\\|\\margl3|\\margr4 |\\margt5|\\margb-6|\\pghsxn|"
     u"\\pgwsxn9|\\marglsxn8|\\lndscpsxn|\\portrait|\\titlepg|\\pgbrdrt|99999999999",
     [](std::u16string& text) { Module1::ApplyMergePageBreaks(text, {}); },
     [](test::LiteralCleaning& literal) { literal.mergePageBreaks(); }},
    {"ApplySectionMarkers",
     u"{\\*\\korvanesection|{\\*\\korvanesection}|"
     u"{\\*\\korvanesection\\landscape\\paperwidth29.7\\paperheight21}|"
     u"{\\*\\korvanesection\\portrait\\marginl2 }|\\page|\\page|\\page |\\pagebb|\\sectd|\\sectd |\\sect|"
     u"\\paperh15840|\\paperw1.5|\\margl3|\\paperheight5|\\marginb50|\\margint\n51\n|\\marginr1e308|"
     u"\\landscape|}|}",
     [](std::u16string& text) { Module1::ApplySectionMarkers(text, {}); },
     [](test::LiteralCleaning& literal) { literal.sectionMarkers(); }},
    {"ProtectTableRows", u"\\trowd|\\trowd |\\row|\\row |\\rowd|\\trkeep|\\trkeepfollow|\\cell",
     [](std::u16string& text) { Module1::ProtectTableRows(text, {}); },
     [](test::LiteralCleaning& literal) { literal.protectRows(); }},
    {"RemoveGeneratorSectionWords",
     u"{\\*\\generator Korvane RTF Control}|{\\*\\generator Korvane RTF Control 3}|"
     u"{\\*\\generator Korvane RTF Control|\\box|\\marglsxn12345|\\titlepg |\\brdrs\r\n|\\cols-2|\\pgbrdrt |"
     u"\\linebetcol |01234567",
     [](std::u16string& text) { Module1::RemoveGeneratorSectionWords(text); },
     [](test::LiteralCleaning& literal) { literal.removeGeneratorSectionWords(); }},
    {"RemoveBackground",
     u"{\\*\\background|{\\*\\background}|{\\*|{\\*\\back|ground|\\background|{\\*\\BACKGROUND x}|}|}",
     [](std::u16string& text) { Module1::RemoveBackground(text, {}); },
     [](test::LiteralCleaning& literal) { literal.removeBackground(); }},
    {"RemoveDuplicateGenerators",
     u"{\\*\\generator A}|{\\*\\generator A}|{\\*\\generator B}|{\\*\\generator|{\\*\\generator A{}}",
     [](std::u16string& text) { Module1::RemoveDuplicateGenerators(text); },
     [](test::LiteralCleaning& literal) { literal.removeDuplicateGenerators(); }},
    {"CollapseBlankLines", u"\r|\n|\r\n\r\n", [](std::u16string& text) { Module1::CollapseBlankLines(text, {}); },
     [](test::LiteralCleaning& literal) { literal.collapseBlankLines(); }},
};

class StageDuel : public testing::TestWithParam<Duel> {};

TEST_P(StageDuel, EqualsTheSteps) {
    const Duel& duel = GetParam();
    std::vector<std::u16string_view> pieces = test::piecesOf(plainPieces);
    // The stage's own words are as frequent as all others together.
    const std::vector<std::u16string_view> own = test::piecesOf(duel.pieces);
    for (std::size_t i = pieces.size() + own.size(); i > 0; --i) pieces.push_back(own[i % own.size()]);
    const unsigned seed = testSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int changed = 0;
    for (int round = 0; round < 20000; ++round) {
        const std::u16string text = (round % 2 == 0 ? u"{\\rtf1" : u"") + test::randomText(random, pieces, 24);
        test::LiteralCleaning literal{text, {}};
        duel.literal(literal);
        std::u16string fast = text;
        duel.fast(fast);
        ASSERT_EQ(toUtf8(fast), toUtf8(literal.text)) << toUtf8(text);
        changed += fast != text;
    }
    EXPECT_GT(changed, 1000);
}

INSTANTIATE_TEST_SUITE_P(Stages, StageDuel, testing::ValuesIn(duels),
                         [](const auto& duel) { return std::string(duel.param.stage); });

// ---- Tables of cases

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
    };
#undef G
    check(cases, [](std::u16string& text) { Module1::RemoveGeneratorSectionWords(text); });
}

TEST(WordsStayApart, WhereARemovalWouldJoinThem) {
    const Case cases[] = {
        {u"{\\rtf1{\\rtf1\\par}World}", u"{\\rtf1\\par World}"},
        {u"{\\rtf1{\\rtf1\\fs20}24}", u"{\\rtf1\\fs20 24}"},
        {u"{\\rtf1{\\rtf1\\par} World}", u"{\\rtf1\\par  World}"},
        {u"{\\rtf1\\b{\\rtf1{\\rtf1 x}}y}", u"{\\rtf1\\b xy}"},
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

TEST(UnwrapNestedDocuments, TolerantRemovesTheWordsOfADocument) {
    for (const auto word : test::piecesOf(
             u"adeff|adeflang|ansi|ansicpg|deff|deflang|deflangfe|gutter|landscape|mac|margb|margl|margr|margt|paperh|"
             u"paperw|pc|pca|stshfbi|stshfdbch|stshfhich|stshfloch")) {
        std::u16string text = u"{\\rtf1{\\rtf1\\" + std::u16string(word) + u"5 x}}";
        Module1::UnwrapNestedDocuments(text, tolerantly());
        EXPECT_EQ(toUtf8(text), "{\\rtf1{x}}") << toUtf8(word);
    }
}

TEST(MergePageBreaks, TakeThePageOfTheNextDocument) {
#define M u"{\\*\\korvanemergepagebreak}"
    const Case cases[] = {
        {M u"\\sectd\\lndscpsxn\\pgwsxn11906\\pghsxn16838 ",
         u"\\sect\\lndscpsxn\\pgwsxn16838\\pghsxn11906\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0"
         u"\\sectd\\lndscpsxn\\pgwsxn11906\\pghsxn16838 "},
        // Without a document, and without the end of the header.
        {u"{\\header a}" M u"x", u"{\\header a}\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0x"},
        // No section begins in a row.
        {u"\\trowd a" M u"b\\row\\intbl a" M u"b\\row", u"\\trowd a\\par b\\row\\intbl a\\par b\\row"},
        {u"\\intbl a\\pard" M u"\\pard",
         u"\\intbl a\\pard\\sect\\pgwsxn0\\pghsxn0\\marglsxn0\\margrsxn0\\margtsxn0\\margbsxn0\\pard"},
    };
    check(cases, [](std::u16string& text) { Module1::ApplyMergePageBreaks(text, {}); });
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
    check(tolerant, [](std::u16string& text) { Module1::ApplyMergePageBreaks(text, tolerantly()); });
}

TEST(SectionMarkers, DescribeTheirSection) {
#define S u"{\\*\\korvanesection"
#define D u"{\\*\\korvanecmplete"
    const Case cases[] = {
        {u"\\page" S u"\\paperheight21\\paperwidth16838\\marginl50}",
         u"\\sect\\pgwsxn16838\\pghsxn11906\\marglsxn28346\\margrsxn0\\margtsxn0\\margbsxn"
         u"0" D u"\\paperheight21\\paperwidth16838\\marginl50}"},
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
    check(tolerant, [](std::u16string& text) { Module1::ApplySectionMarkers(text, tolerantly()); });
}

TEST(TableRows, TolerantKeepsTheRowsAroundATableApart) {
    const std::u16string identity = u"{01234567-0123-0123-0123-0123456789ab}}";
    const std::u16string inner = u"{\\*\\korvane\\starttable" + identity + u"\\trowd x\\cell";
    const std::u16string behind = u"\\row {\\*\\korvane\\endtable" + identity;
    std::u16string text = u"\\trowd " + inner + behind + u"\\cell\\row";
    Module1::ProtectTableRows(text, tolerantly());
    EXPECT_EQ(toUtf8(text), toUtf8(u"\\trowd " + inner + u"\\trkeep" + behind + u"\\cell\\trkeep\\row"));
}

TEST(BlankLines, TolerantKeepsTheDataOfPictures) {
    std::u16string text = u"a\r\n\r\n\\bin6 \r\n\r\n\r\n\r\n\r\nb";
    Module1::CollapseBlankLines(text, tolerantly());
    EXPECT_EQ(toUtf8(text), toUtf8(u"a\r\n\\bin6 \r\n\r\n\r\n\r\nb"));
}

}  // namespace
}  // namespace velmor
