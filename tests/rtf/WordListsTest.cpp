#include <gtest/gtest.h>

#include "Merged.h"
#include "NestedTableText.h"
#include "Pieces.h"
#include "rtf/read/CodePages.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/tables/NestedTables.h"
#include "rtf/tables/RowDefinition.h"
#include "text/Compare.h"

// Each word of each list of merging and of the table stages, in the smallest text in which it matters.

namespace velmor {
namespace {

using test::narrow;

TEST(WordLists, References) {
    const std::u16string tables =
        u"{\\fonttbl{\\f9 A;}}{\\colortbl;\\red1;\\red1;}{\\stylesheet{\\s0 Normal;}{\\s9 P;}{\\*\\cs9 C;}{\\ds9 "
        u"D;}{\\*\\ts9 "
        u"T;}}{\\*\\listoverridetable{\\listoverride\\ls9}}";
    const auto reference = [&](std::u16string_view word, std::u16string_view before, bool tolerant) {
        const std::u16string written = u"\\" + std::u16string(word) + std::u16string(before) + u" ";
        const std::u16string text = test::merged(
            u"{\\rtf1\\deff9{\\fonttbl{\\f9 A;}}{\\rtf1\\deff9" + tables + u"!" + written + u"}}", tolerant);
        const std::size_t begin = text.find(u'!') + 2 + word.size();
        return narrow(text.substr(begin, text.find(u' ', begin) - begin));
    };
    for (const auto word : test::piecesOf(u"af|adeff|deff|mmathFont|pnf|stshfdbch|stshfloch|stshfhich|stshfbi")) {
        EXPECT_EQ(reference(word, u"9", true), "0") << narrow(word);
        EXPECT_EQ(reference(word, u"9", false), "9") << narrow(word);
    }
    for (const auto word : test::piecesOf(u"clcfpatraw|clcbpatraw|trcfpat|trcbpat|tscellcfpat|tscellcbpat")) {
        EXPECT_EQ(reference(word, u"2", true), "1") << narrow(word);
        EXPECT_EQ(reference(word, u"2", false), "2") << narrow(word);
    }
    for (const bool tolerant : {false, true}) {
        EXPECT_EQ(reference(u"f", u"9", tolerant), "0");
        for (const auto word : test::piecesOf(u"cf|cb|chcfpat|chcbpat|pncf|brdrcf|cfpat|cbpat|clcfpat|clcbpat|afc|"
                                              u"highlight|ulc")) {
            EXPECT_EQ(reference(word, u"2", tolerant), "1") << narrow(word);
        }
        const std::pair<const char16_t*, const char*> styles[] = {{u"s", "1"},  {u"cs", "2"},  {u"ds", "3"},
                                                                  {u"ts", "4"}, {u"yts", "4"}, {u"ls", "1"}};
        for (const auto& [word, number] : styles) EXPECT_EQ(reference(word, u"9", tolerant), number) << narrow(word);
    }
    for (const auto word : test::piecesOf(u"CF|CB|CHCFPAT|CHCBPAT|PNCF|BRDRCF|CLCFPAT|CLCBPAT|AFC|HIGHLIGHT|"
                                          u"ULC|F")) {
        const std::u16string text =
            test::merged(u"{\\rtf1{\\fonttbl{\\f9 A;}}{\\colortbl;\\red1;}\\" + std::u16string(word) + u"7 }");
        EXPECT_NE(text.find(u"\\" + lowerCase(word) + u"7 "), text.npos) << narrow(word);
    }
}

TEST(WordLists, GroupsThatStandApart) {
    for (const auto word :
         test::piecesOf(u"annotation|dptxbxtext|footer|footerf|footerl|footerr|footnote|header|headerf|"
                        u"headerl|headerr|nonesttables|shprslt|shptxt")) {
        const std::u16string group = u"{\\*\\" + std::u16string(word) + u"\\pard x\\par}";
        std::u16string text = test::withMarkers(u"<1:\\intbl" + group + u"\\cell\\row:1>");
        Module1::ConvertNestedTables(text, {});
        EXPECT_NE(text.find(group), text.npos) << narrow(text);
    }
}

TEST(WordLists, DefinitionsOfRows) {
    const auto definition = [](std::u16string_view text) { return rowDefinitionAt(text, 0, text.size()).range.end; };
    for (const auto word :
         test::piecesOf(u"clvertalt|cellx9|irow0|irowband0|lastrow|ltrrow|rtlrow|trgaph9|ts9|tblrsid9|"
                        u"tposx9|tphcol|tpvpara|tdfrmtxtLeft9")) {
        const std::u16string text = u"\\trowd\\b\\" + std::u16string(word) + u"\\i x";
        EXPECT_EQ(definition(text), text.size() - 4) << narrow(word);
    }
    // A word that ends the run keeps words of the paragraph in place; one that ends the definition does not.
    for (const auto word : test::piecesOf(u"cell|intbl|itap2|nestcell")) {
        EXPECT_EQ(definition(u"\\trowd\\b\\" + std::u16string(word) + u"\\cellx9"), 6u) << narrow(word);
    }
    for (const auto word : test::piecesOf(u"par|pard|row|nestrow|trowd")) {
        EXPECT_EQ(definition(u"\\trowd\\b\\" + std::u16string(word) + u"\\cellx9"), 8u) << narrow(word);
    }
}

TEST(WordLists, WordsOfParagraphs) {
    for (const auto word : test::piecesOf(
             u"adjustright|aspalpha|aspnum|box|brdrt|brsp9|cbpat1|cfpat1|contextualspace|cufi9|culi9|curi9|faauto|"
             u"facenter|"
             u"fafixed|fahang|faroman|favar|fi9|hyphpar|indmirror|keep|keepn|li9|lin9|lisa9|lisb9|ltrpar|noline|"
             u"nooverflow|"
             u"nosnaplinegrid|nowidctlpar|nowwrap|qc|qd|qj|qk|ql|qr|qt|ri9|rin9|rtlpar|s9|sa9|saauto|sb9|sbauto|"
             u"shading9|sl9|slmult1|tb9|tldot|tleq|tlhyph|tlmdot|tlth|tlul|tqc|tqdec|tqr|tx9|widctlpar|wrapdefault")) {
        const std::u16string words = u"\\" + std::u16string(word);
        EXPECT_EQ(narrow(paragraphWords(u"\\pard\\b" + words + u"\\plain x", 0)), narrow(words));
    }
    for (const auto word : test::piecesOf(u"cell|nestcell|nestrow|par|pard|row|sect|trowd")) {
        EXPECT_EQ(narrow(paragraphWords(u"\\pard\\qc\\" + std::u16string(word) + u"\\li9 x", 0)), "\\qc");
    }
}

TEST(WordLists, Groups) {
    const std::pair<const char16_t*, Group> openings[] = {
        {u"{\\fonttbl", Group::fontTable},
        {u"{\\colortbl", Group::colourTable},
        {u"{\\listtable", Group::listTable},
        {u"{\\*\\listtable", Group::listTable},
        {u"{\\listoverridetable", Group::listOverrideTable},
        {u"{\\*\\listoverridetable", Group::listOverrideTable},
        {u"{\\stylesheet", Group::styleSheet},
        {u"{\\headerf", Group::header},
        {u"{\\footerl", Group::footer},
        {u"{\\*\\korvanenewheader", Group::newHeader},
        {u"{\\*\\korvanenewfooter", Group::newFooter},
        {u"{\\*\\korvanemergepagebreak", Group::mergePageBreak},
        {u"{\\*\\korvanesection", Group::section},
        {u"{\\*\\korvane\\starttable", Group::tableMarker},
        {u"{\\*\\background", Group::background},
        {u"{\\*\\generator", Group::generator},
    };
    for (const auto& [text, group] : openings) {
        GroupSet groups;
        groups.note(text, 0);
        EXPECT_TRUE(groups.has(group)) << narrow(text);
    }
}

TEST(WordLists, CodePages) {
    const std::pair<const char16_t*, std::int32_t> words[] = {
        {u"\\ansi", 1252}, {u"\\mac", 10000}, {u"\\pc", 437}, {u"\\pca", 850}, {u"\\ansicpg1251", 1251}, {u"\\b", 0}};
    for (const auto& [text, page] : words) EXPECT_EQ(codePageNamedBy(readWord(text, 0)), page) << narrow(text);
}

}  // namespace
}  // namespace velmor
