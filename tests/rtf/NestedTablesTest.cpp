#include "rtf/tables/NestedTables.h"

#include <gtest/gtest.h>

#include "NestedTableText.h"
#include "SmallStack.h"

namespace velmor {
namespace {

std::u16string convertMarked(std::u16string text, bool tolerant = false) {
    CleanOptions options;
    options.tolerant = tolerant;
    Module1::ConvertNestedTables(text, options);
    return text;
}

std::u16string converted(const std::u16string& text, bool tolerant = false) {
    return test::withoutMarkers(convertMarked(test::withMarkers(text), tolerant));
}

struct Case {
    std::u16string text;
    std::u16string expected;
};

constexpr std::u16string_view rowOpening = u"\\pard\\intbl\\itap2\\nowidctlpar{\\*\\nesttableprops";

// "<n:" and ":n>" are markers, "@" is the beginning of a nested row's group.
const Case cases[] = {
    // Definitions before the cells, after them, shared by two rows.
    {u"<1:\\trowd\\pard\\intbl <2:\\trowd\\cellx9\\pard\\intbl a\\cell\\row :2>\\cell\\row:1>",
     u"<1:\\trowd\\pard\\intbl\\itap1 <2:\\pard\\intbl\\itap2 a\\nestcell@\\trowd\\cellx9\\nestrow "
     u"}:2>\\pard\\intbl\\itap1"
     u"\\cell\\row:1>"},
    {u"<1:\\intbl <2:\\intbl a\\cell\\trowd\\cellx9\\row:2>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2 a\\nestcell@\\trowd\\cellx9\\nestrow}:2>\\pard\\intbl\\itap1\\cell\\row:1>"},
    {u"<1:\\intbl <2:\\trowd\\cellx9\\intbl a\\cell\\row\\intbl b\\cell\\row:2>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2 a\\nestcell@\\trowd\\cellx9\\nestrow}\\intbl\\itap2 "
     u"b\\nestcell@\\trowd\\cellx9"
     u"\\nestrow}:2>\\pard\\intbl\\itap1\\cell\\row:1>"},
    // Text around a table, a number after it, two tables in one cell.
    {u"<1:\\pard\\qc\\intbl\\b x<2:\\intbl a\\cell\\trowd\\cellx9\\row:2>5 y\\cell\\row:1>",
     u"<1:\\pard\\qc\\intbl\\itap1\\b x\\par<2:\\intbl\\itap2 a\\nestcell@\\trowd\\cellx9\\nestrow}:2>\\pard\\qc\\intbl"
     u"\\itap1 5 y\\cell\\row:1>"},
    {u"<1:\\intbl <2:{\\intbl a\\cell\\trowd\\cellx9\\row:2>}<3:\\intbl b\\cell\\trowd\\cellx8\\row:3>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:{\\intbl\\itap2 "
     u"a\\nestcell@\\trowd\\cellx9\\nestrow}:2>}\\pard\\intbl\\itap1\\par<3:\\intbl"
     u"\\itap2 b\\nestcell@\\trowd\\cellx8\\nestrow}:3>\\pard\\intbl\\itap1\\cell\\row:1>"},
    // The paragraph after a nested row is set up after the row's group.
    {u"<1:\\intbl <2:\\pard\\qc\\intbl a\\nestcell{\\*\\nesttableprops\\trowd\\nestrow }b\\nestcell:2>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\pard\\qc\\intbl\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\nestrow }\\pard\\qc\\intbl"
     u"\\itap2b\\nestcell:2>\\pard\\intbl\\itap1\\cell\\row:1>"},
    // A section does not end in a row.
    {u"<1:\\trowd\\intbl a\\sect\\sectd b\\cell\\row\\sect:1>",
     u"<1:\\trowd\\intbl\\itap1 a\\par\\intbl\\itap1\\sectd b\\cell\\row\\sect:1>"},
    // Native nested rows keep their groups, complete paragraphs stay, and \trkeep moves with its row.
    {u"<1:\\intbl <2:\\intbl\\itap1 "
     u"n\\nestcell{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}{\\nonesttables\\par}:2>\\pard"
     u"\\intbl\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2 "
     u"n\\nestcell{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}{\\nonesttables\\par}:2>"
     u"\\pard\\intbl\\itap1\\cell\\row:1>"},
    {u"<1:\\intbl <2:\\trowd\\cellx9 a\\cell\\trkeep\\row b\\cell\\row:2>\\pard c\\par\\pard\\intbl\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2a\\nestcell@\\trowd\\cellx9 \\trkeep\\nestrow }\\intbl\\itap2"
     u"b\\nestcell@\\trowd"
     u"\\cellx9 \\nestrow}:2>\\pard\\intbl\\itap1 c\\par\\pard\\intbl\\itap1\\cell\\row:1>"},
    // Levels; a footnote is not a paragraph of the table.
    {u"<1:\\itap\\b\\itap x\\itap 5{\\itap}\\itap0\\intbl\\itap37\\par\\pard y{\\footnote\\pard\\itap0 z}\\cell:1>",
     u"<1:\\intbl\\itap1\\b\\intbl\\itap1x\\intbl\\itap1 "
     u"5{\\intbl\\itap1}\\itap1\\intbl\\itap17\\par\\intbl\\itap1\\pard\\intbl"
     u"\\itap1 y{\\footnote\\pard\\itap0 z}\\cell:1>"},
    // Without a definition, without a cell.
    {u"<1:\\intbl <2:\\intbl a\\cell b\\cell\\row:2>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2 a\\nestcell "
     u"b\\nestcell@\\trowd\\cellx1440\\cellx2880\\nestrow}:2>\\pard\\intbl"
     u"\\itap1\\cell\\row:1>"},
    {u"<1:\\intbl <2:\\trowd\\irow0\\lastrow\\row:2>\\cell\\row:1>",
     u"<1:\\intbl\\itap1 <2:\\intbl\\itap2@\\trowd\\irow0\\lastrow\\nestrow}:2>\\pard\\intbl\\itap1\\cell\\row:1>"},
    // Adjacent pairs are not nested; invalid pairs change nothing.
    {u"<1:\\intbl\\cell\\row:1><2:\\intbl\\cell\\row:2>",
     u"<1:\\intbl\\itap1\\cell\\row:1><2:\\intbl\\itap1\\cell\\row:2>"},
    {u"<1::1>\\intbl\\cell\\row", u"<1::1>\\intbl\\cell\\row"},
    {u":1>\\intbl<1:\\intbl\\cell\\row<2:\\intbl:2>", u":1>\\intbl<1:\\intbl\\cell\\row<2:\\intbl:2>"},
};

TEST(NestedTables, AreWrittenLevelByLevel) {
    for (const auto& [text, expected] : cases) {
        std::u16string whole = expected;
        for (std::size_t at = 0; (at = whole.find(u'@')) != std::u16string::npos;) whole.replace(at, 1, rowOpening);
        EXPECT_EQ(converted(text), whole);
    }
}

TEST(NestedTables, TolerantCleaningReadsOn) {
    EXPECT_EQ(converted(u"<9:<1:\\itap37\\bin29 \\par :1>\\itap4\\cell:1>", true),
              u"<9:<1:\\itap1\\bin29 \\par :1>\\itap1\\cell:1>");
    EXPECT_EQ(converted(u"<9:<1:<2:\\itap37\\intbl\\cell:2>:1>", true),
              u"<9:<1:<2:\\itap2\\intbl\\itap2\\nestcell:2>:1>");
}

// Truncated text, and truncated text before a marker, loses white space only.
TEST(NestedTables, TextCutAnywhereKeepsItsMarkersAndBraces) {
    const std::u16string last = u"\\pard\\intbl\\itap2 \\par \\itap";
    const std::u16string whole = test::withMarkers(
        u"<1:\\trowd\\intbl x<2:\\trowd\\cellx9{a\\cell\\row }:2>\\pard\\par\\itap:1>{b}<3:\\trowd\\row:3>");
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        const std::u16string result = convertMarked(whole.substr(0, length));
        EXPECT_GE(result.size() + 1, length);
    }
    for (std::size_t length = 0; length <= last.size(); ++length) {
        const std::u16string cut = last.substr(0, length);
        const std::u16string result = converted(u"<1:\\intbl " + cut + u"<2:a\\cell\\row:2>:1>");
        EXPECT_EQ(result.substr(result.size() - 3), u":1>");
        // An escaped brace does not begin a marker.
        const bool isMarker = length == 0 || cut.back() != u'\\';
        EXPECT_EQ(result.find(u"a\\nestcell") != result.npos, isMarker);
    }
}

TEST(NestedTables, ManyTablesInOneCellAreOfOneLevel) {
    std::u16string text = test::tableStart(u"o") + u"\\trowd\\cellx99\\pard\\intbl ";
    for (char16_t i = 0; i < 4000; ++i) {
        const std::u16string identity(1, static_cast<char16_t>(0x1000 + i));
        text += test::tableStart(identity) + u"\\trowd\\cellx9\\pard\\intbl a\\cell\\row " + test::tableEnd(identity);
    }
    const std::u16string result = convertMarked(text + u"\\cell\\row" + test::tableEnd(u"o"));
    EXPECT_EQ(result.find(u"\\itap3"), result.npos);
    std::size_t rows = 0;
    for (std::size_t at = 0; (at = result.find(u"\\nestrow }", at)) != result.npos; ++at) ++rows;
    EXPECT_EQ(rows, 4000u);
}

// Repeated definitions are bounded.
TEST(NestedTables, ALongDefinitionDoesNotMultiply) {
    std::u16string text = test::tableStart(u"o") + u"\\intbl " + test::tableStart(u"i") + u"\\trowd";
    for (int i = 0; i < 20000; ++i) text += u"\\cellx9";
    for (int i = 0; i < 20000; ++i) text += u"\\intbl\\cell\\row";
    text += test::tableEnd(u"i") + test::tableEnd(u"o");
    EXPECT_LT(convertMarked(text).size(), 70 * text.size());
}

// Pairs in pairs, each possibly in a footnote.
std::u16string nested(int depth, std::u16string_view between) {
    std::u16string text;
    std::vector<std::u16string> identities;
    for (int i = 0; i < depth; ++i) {
        const std::string digits = std::to_string(i);
        identities.emplace_back(digits.begin(), digits.end());
        text += test::tableStart(identities.back()) + u"\\trowd\\cellx9\\intbl x";
        text += between;
    }
    for (; !identities.empty(); identities.pop_back()) text += u"\\cell\\row" + test::tableEnd(identities.back());
    return text;
}

// A level is one digit, at most 9.
TEST(NestedTables, AHundredThousandLevelsNeedNoStack) {
    test::onSmallStack([](void*) -> void* {
        const std::u16string result = convertMarked(nested(100000, u""));
        EXPECT_NE(result.find(u"\\intbl\\itap9 x\\nestcell\\pard\\intbl\\itap9\\nowidctlpar"), result.npos);
        EXPECT_EQ(result.find(u"\\itap10"), result.npos);
        convertMarked(nested(100000, u"{\\footnote "));
        return nullptr;
    });
}

}  // namespace
}  // namespace velmor
