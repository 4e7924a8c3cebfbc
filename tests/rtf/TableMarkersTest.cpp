#include "rtf/tables/TableMarkers.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Corpus.h"
#include "NestedTableText.h"
#include "NumberedTables.h"
#include "RtfText.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

using test::CountedGuids;

std::u16string marked(std::u16string text) {
    CountedGuids guids;
    addTableMarkers(text, guids);
    return test::withoutMarkers(test::withNumberedIdentities(std::move(text)));
}

const std::pair<std::u16string, std::u16string> markCases[] = {
    // From the first row to the last, after the blank that ends the row.
    {u"a\\trowd\\irow0\\lastrow b\\cell\\row c", u"a<1:\\trowd\\irow0\\lastrow b\\cell\\row :1>c"},
    {u"\\trowd\r\n \\irow0\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row}",
     u"<1:\\trowd\r\n \\irow0\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row:1>}"},
    {u"\\trowd\\irow0\\lastrow\\cell\\row\\trowd\\irow0\\lastrow\\cell\\row",
     u"<1:\\trowd\\irow0\\lastrow\\cell\\row:1><2:\\trowd\\irow0\\lastrow\\cell\\row:2>"},
    // Cells, \intbl and \itap before the first row belong to the table.
    {u"x\\par\\pard\\intbl a\\cell b\\cell\\trowd\\irow0\\lastrow\\row",
     u"x\\par<1:\\pard\\intbl a\\cell b\\cell\\trowd\\irow0\\lastrow\\row:1>"},
    {u"x\\itap1\\trowd\\irow0\\lastrow\\cell\\row", u"x<1:\\itap1\\trowd\\irow0\\lastrow\\cell\\row:1>"},
    {u"x\\itap0\\trowd\\irow0\\lastrow\\cell\\row", u"x\\itap0<1:\\trowd\\irow0\\lastrow\\cell\\row:1>"},
    // The repeated definition is removed; a row's only one stays, and so does one blank.
    {u"\\trowd\\irow0\\cellx5 a\\cell}\\pard{\\trowd\\irow0\\cellx5\\row}\\pard\\intbl b\\cell\\trowd\\irow1\\lastrow"
     u"\\cellx5\\row",
     u"<1:\\trowd\\irow0\\cellx5 a\\cell\\row}\\pard\\intbl b\\cell\\trowd\\irow1\\lastrow\\cellx5\\row:1>"},
    {u"\\trowd\\irow0\\lastrow a\\cell \\row  ", u"<1:\\trowd\\irow0\\lastrow a\\cell \\row :1>"},
    // A row without a cell takes none from the previous row.
    {u"\\trowd\\irow0 a\\cell\\row\\trowd\\irow1\\lastrow\\cellx5\\row",
     u"<1:\\trowd\\irow0 a\\cell\\row\\trowd\\irow1\\lastrow\\cellx5\\row:1>"},
    // A table without its end loses nothing, nor does a row in whose last cell a nested table follows.
    {u"\\trowd\\irow0\\lastrow a\\cell\\row\\trowd\\irow0 b\\cell\\trowd\\row",
     u"<1:\\trowd\\irow0\\lastrow a\\cell\\row:1>\\trowd\\irow0 b\\cell\\trowd\\row"},
    {u"\\trowd\\irow0 a\\cell\\itap2 b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\row\\lastrow"
     u"\\cell\\row",
     u"<1:\\trowd\\irow0 a\\cell<2:\\itap2 b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:2>\\row"
     u"\\lastrow\\cell\\row:1>"},
    // The marker separates the definition from the word before it.
    {u"\\nesttableprops\\trowd\\irow0\\lastrow a\\cell\\trowd\\row",
     u"\\nesttableprops<1:\\trowd\\irow0\\lastrow a\\cell\\row:1>"},
    // Nested tables have pairs of their own; the outer table does not end with their last row.
    {u"\\trowd\\irow0\\pard\\intbl a\\par\\pard\\intbl\\itap2 b\\nestcell c\\nestcell{\\*\\nesttableprops\\trowd"
     u"\\irow0\\lastrow\\nestrow}{\\nonesttables\\par}\\pard\\intbl d\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row",
     u"<1:\\trowd\\irow0\\pard\\intbl a\\par<2:\\pard\\intbl\\itap2 b\\nestcell c\\nestcell{\\*\\nesttableprops\\trowd"
     u"\\irow0\\lastrow\\nestrow}:2>{\\nonesttables\\par}\\pard\\intbl "
     u"d\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row:1>"},
    // The level of a paragraph ends with the row.
    {u"\\trowd\\irow0\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\row x\\par "
     u"b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\cell\\row\\lastrow\\cell\\row",
     u"<1:<2:\\trowd\\irow0\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:2>\\row x\\par <3:"
     u"b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:3>\\cell\\row\\lastrow\\cell\\row:1>"},
    // The end of a paragraph ends the properties of a row.
    {u"\\trowd\\irow0\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\par}b\\cell\\row",
     u"<1:\\trowd\\irow0\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\par}b\\cell\\row:1>"},
    // Two rows; what other readers show is not part of the next table.
    {u"\\trowd\\irow0\\pard\\itap2 "
     u"a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\nestrow}b\\nestcell{\\*"
     u"\\nesttableprops\\trowd\\irow1\\lastrow\\nestrow}{\\nonesttables\\par}c\\nestcell{\\*"
     u"\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\cell\\row\\lastrow\\cell\\row",
     u"<1:<2:\\trowd\\irow0\\pard\\itap2 "
     u"a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\nestrow}b\\nestcell{\\*"
     u"\\nesttableprops\\trowd\\irow1\\lastrow\\nestrow}:2>{\\nonesttables\\par}<3:c\\nestcell{\\*"
     u"\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:3>\\cell\\row\\lastrow\\cell\\row:1>"},
    // Not a group.
    {u"\\trowd\\irow0\\nonesttables\\par\\itap2 "
     u"a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\cell\\row\\lastrow\\cell\\row",
     u"<1:\\trowd\\irow0\\nonesttables\\par<2:\\itap2 "
     u"a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:2>\\cell\\row\\lastrow\\cell\\row:1>"},
    // Three levels that begin at one place, and two adjacent tables of one level.
    {u"\\pard\\intbl\\itap3 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\pard\\intbl\\itap2 "
     u"b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\pard\\intbl\\itap2 c\\nestcell{\\*"
     u"\\nesttableprops \\trowd\\irow0\\lastrow\\nestrow}\\pard\\intbl d\\cell\\trowd\\irow0\\lastrow\\row",
     u"<1:<2:<3:\\pard\\intbl\\itap3 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:3>\\pard\\intbl"
     u"\\itap2 b\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}:2><4:\\pard\\intbl\\itap2 c\\nestcell{"
     u"\\*\\nesttableprops \\trowd\\irow0\\lastrow\\nestrow}:4>\\pard\\intbl d\\cell\\trowd\\irow0\\lastrow\\row:1>"},
};

TEST(TableMarkers, BracketsTables) {
    for (const auto& [text, expected] : markCases) EXPECT_EQ(marked(text), expected);
}

const std::u16string unmarkedCases[] = {
    u"",
    u"no table   ",
    u"\\trowd\\irow0\\cell\\row",             // no last row
    u"\\trowd\\irow0\\lastrow\\cell",         // which does not end
    u"\\\\trowd\\irow0\\lastrow\\cell\\row",  // escaped
    u"\\trowd\\trgaph9\\irow0\\lastrow\\cell\\row",
    u"\\trowd\\irow0\\lastrow\\cell\\row {\\*\\korvane\\starttable",
};

TEST(TableMarkers, KeepsOtherTexts) {
    for (const std::u16string& text : unmarkedCases) {
        CountedGuids guids;
        std::u16string value = text;
        EXPECT_FALSE(addTableMarkers(value, guids));
        EXPECT_EQ(value, text);
    }
}

TEST(TableMarkers, RemovesInTheRangeOnlyAndKeepsTheLength) {
    const std::u16string row = u"\\trowd a\\cell\\trowd\\row";
    const std::u16string kept = u"\\trowd a\\cell\\row";
    std::u16string value = row + row + row + u".";
    std::int32_t start = 24, end = 47;
    RemoveExtraTrowd(value, start, end);
    EXPECT_EQ(value, row + kept + row + u"." + std::u16string(6, u' '));
    EXPECT_EQ(end, 41);
    start = INT32_MIN, end = INT32_MAX;
    RemoveExtraTrowd(value, start, end);
    EXPECT_EQ(value, kept + kept + kept + u"." + std::u16string(18, u' '));
    EXPECT_EQ(end, INT32_MAX - 12);
}

std::u16string repeated(std::u16string_view piece, int count) {
    std::u16string text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

// Each of these takes minutes if a table, a row or a word is read again for the next one.
TEST(TableMarkers, LargeTextsStayCheap) {
    const std::u16string table = u"\\trowd\\irow0\\lastrow a\\cell\\trowd\\irow0\\row";
    const std::u16string nested = u"\\pard\\itap2 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}";
    const std::u16string hard[] = {
        repeated(u"\\trowd\\irow0", 250000),
        repeated(u"\\cell", 250000) + table,
        repeated(u"\\intbl", 250000) + table,
        repeated(u"\\itap0", 250000) + table,
        repeated(u"\\cellx", 250000) + repeated(u"\\row", 250000) + table,
        table + repeated(u"\\\\", 250000) + table,
        table + repeated(u"\\trowd ", 250000) + table,
        u"\\trowd\\irow0" + repeated(nested + u"\\cell\\row", 20000) + u"\\lastrow\\row",
        u"\\trowd\\irow0" + repeated(u"{\\*\\nesttableprops\\trowd\\irow0", 50000) + u"\\lastrow\\row",
        u"\\trowd\\irow0" + repeated(u"{\\nonesttables", 50000) + u"\\lastrow\\row",
    };
    for (const std::u16string& text : hard) {
        std::u16string value = text;
        CountedGuids guids;
        addTableMarkers(value, guids);
        EXPECT_GE(value.size(), text.size() / 2);
    }
    std::u16string tables = repeated(table, 50000);
    CountedGuids guids;
    addTableMarkers(tables, guids);
    EXPECT_EQ(tables.size(), 50000 * (table.size() - 12 + 61 + 59));
}

TEST(TableMarkers, MarksTablesNestedToAnyDepth) {
    std::u16string text = u"\\trowd\\irow0 ";
    for (int level = 20000; level >= 2; --level) {
        const std::string number = std::to_string(level);
        text.append(u"\\pard\\itap").append(number.begin(), number.end());
        text.append(u" a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}");
    }
    text += u"\\pard\\lastrow\\cell\\row";
    const std::size_t length = text.size();
    CountedGuids guids;
    addTableMarkers(text, guids);
    EXPECT_EQ(text.size(), length + 20000 * 120);
}

// The number of marker pairs; -1 unless they are properly nested and have different identifiers.
int pairsOf(const std::u16string& text) {
    std::vector<std::u16string> open, seen;
    for (std::size_t at = 0; (at = text.find(u"{\\*\\korvane\\", at)) != std::u16string::npos; ++at) {
        if (standsAt(text, at, startTableMarker)) {
            open.push_back(text.substr(at + startTableMarker.size(), 38));
            if (std::find(seen.begin(), seen.end(), open.back()) != seen.end()) return -1;
            seen.push_back(open.back());
        } else {
            if (open.empty() || text.substr(at + endTableMarker.size(), 38) != open.back()) return -1;
            open.pop_back();
        }
    }
    return open.empty() ? static_cast<int>(seen.size()) : -1;
}

TEST(Corpus, MarkingLosesNoTextAndPairsUp) {
    int tables = 0;
    for (const auto& [name, document] : test::corpus()) {
        SCOPED_TRACE(name);
        std::u16string value = document;
        test::CountedGuids guids;
        const bool changed = addTableMarkers(value, guids);
        const int pairs = pairsOf(value);
        EXPECT_EQ(pairs > 0, changed);
        EXPECT_GE(pairs, 0);
        EXPECT_TRUE(test::RtfText(value).text() == test::RtfText(document).text());
        const std::u16string once = value;
        EXPECT_FALSE(addTableMarkers(value, guids) && changed);
        EXPECT_EQ(value, once);
        tables += pairs;
    }
    EXPECT_GT(tables, 0);
}

}  // namespace
}  // namespace velmor
