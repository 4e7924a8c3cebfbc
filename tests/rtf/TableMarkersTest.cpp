#include "Seed.h"
#include "rtf/TableMarkers.h"

#include <gtest/gtest.h>

#include <random>

#include "TableDuel.h"

namespace velmor {
namespace {

using test::CountedGuids;

// The markers written short: "<1:" and ":1>".
std::u16string shortened(std::u16string text) {
    for (const bool start : {true, false}) {
        const std::u16string_view marker = start ? startTableMarker : endTableMarker;
        for (std::size_t at = 0; (at = text.find(marker, at)) != std::u16string::npos;) {
            const std::u16string number = text.substr(at + marker.size() + 36, 1);
            text.replace(at, marker.size() + 39, start ? u"<" + number + u":" : u":" + number + u">");
        }
    }
    return text;
}

std::u16string marked(std::u16string text) {
    CountedGuids guids;
    addTableMarkers(text, guids);
    return shortened(text);
}

const std::pair<std::u16string, std::u16string> markCases[] = {
    // From the first row to the last, behind the blank that ends the row.
    {u"a\\trowd\\irow0\\lastrow b\\cell\\row c", u"a<1:\\trowd\\irow0\\lastrow b\\cell\\row :1>c"},
    {u"\\trowd\r\n \\irow0\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row}",
     u"<1:\\trowd\r\n \\irow0\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row:1>}"},
    {u"\\trowd\\irow0\\lastrow\\cell\\row\\trowd\\irow0\\lastrow\\cell\\row",
     u"<1:\\trowd\\irow0\\lastrow\\cell\\row:1><2:\\trowd\\irow0\\lastrow\\cell\\row:2>"},
    // Cells, \intbl and \itap in front of the first row belong to the table.
    {u"x\\par\\pard\\intbl a\\cell b\\cell\\trowd\\irow0\\lastrow\\row",
     u"x\\par<1:\\pard\\intbl a\\cell b\\cell\\trowd\\irow0\\lastrow\\row:1>"},
    {u"x\\itap1\\trowd\\irow0\\lastrow\\cell\\row", u"x<1:\\itap1\\trowd\\irow0\\lastrow\\cell\\row:1>"},
    {u"x\\itap0\\trowd\\irow0\\lastrow\\cell\\row", u"x\\itap0<1:\\trowd\\irow0\\lastrow\\cell\\row:1>"},
    // The repeated definition goes, a row's only one stays, and so does one blank.
    {u"\\trowd\\irow0\\cellx5 a\\cell}\\pard{\\trowd\\irow0\\cellx5\\row}\\pard\\intbl b\\cell\\trowd\\irow1\\lastrow"
     u"\\cellx5\\row",
     u"<1:\\trowd\\irow0\\cellx5 a\\cell\\row}\\pard\\intbl b\\cell\\trowd\\irow1\\lastrow\\cellx5\\row:1>"},
    {u"\\trowd\\irow0\\lastrow a\\cell \\row  ", u"<1:\\trowd\\irow0\\lastrow a\\cell \\row :1>"},
    // A row without a cell of its own takes none from the row before it.
    {u"\\trowd\\irow0 a\\cell\\row\\trowd\\irow1\\lastrow\\cellx5\\row",
     u"<1:\\trowd\\irow0 a\\cell\\row\\trowd\\irow1\\lastrow\\cellx5\\row:1>"},
    // Nested tables have pairs of their own; the outer table does not end with their last row.
    {u"\\trowd\\irow0\\pard\\intbl a\\par\\pard\\intbl\\itap2 b\\nestcell c\\nestcell{\\*\\nesttableprops\\trowd"
     u"\\irow0\\lastrow\\nestrow}{\\nonesttables\\par}\\pard\\intbl d\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row",
     u"<1:\\trowd\\irow0\\pard\\intbl a\\par<2:\\pard\\intbl\\itap2 b\\nestcell c\\nestcell{\\*\\nesttableprops\\trowd"
     u"\\irow0\\lastrow\\nestrow}:2>{\\nonesttables\\par}\\pard\\intbl "
     u"d\\cell\\row\\trowd\\irow1\\lastrow\\cell\\row:1>"},
    // Three levels that begin in one place, and two tables of one level side by side.
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

TEST(TableMarkers, LeavesOtherTextsAlone) {
    for (const std::u16string& text : unmarkedCases) {
        CountedGuids guids;
        std::u16string value = text;
        EXPECT_FALSE(addTableMarkers(value, guids));
        EXPECT_EQ(value, text);
    }
}

TEST(TableMarkers, MarkingTwiceChangesNothing) {
    for (const auto& [text, expected] : markCases) {
        CountedGuids guids;
        std::u16string value = text;
        EXPECT_TRUE(addTableMarkers(value, guids));
        const std::u16string once = value;
        EXPECT_FALSE(addTableMarkers(value, guids));
        EXPECT_EQ(value, once);
    }
}

TEST(TableMarkers, RemovesInTheRangeAloneAndKeepsTheLength) {
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

TEST(TableMarkers, NestedTablesAreMarkedOnce) {
    std::u16string value =
        u"\\pard\\itap3 a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\pard\\itap2 b\\nestcell{\\*"
        u"\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}\\pard c\\cell";
    const auto length = static_cast<std::int32_t>(value.size());
    CountedGuids guids;
    std::int32_t end = length + 1;
    EXPECT_EQ(MarkNestedTables(value, 1, end, guids), 2);
    EXPECT_EQ(end, length + 1 + 2 * (startTableMarkerLength + endTableMarkerLength));
    EXPECT_EQ(MarkNestedTables(value, 1, end, guids), 0);
}

class RandomTables {
public:
    explicit RandomTables(std::size_t longest) : longest_(longest) {}

    std::u16string next() {
        std::uint8_t bytes[64];
        const std::size_t size = random_() % longest_;
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<std::uint8_t>(random_());
        return test::tableText(bytes, size);
    }
    // A place in the text, or one just outside.
    std::int32_t place(const std::u16string& text) {
        return static_cast<std::int32_t>(random_() % (text.size() + 1)) + 1;
    }
    std::string seed() const { return "seed " + std::to_string(seed_); }

private:
    std::size_t longest_;
    std::uint32_t seed_ = testSeed();
    std::mt19937 random_{seed_};
};

TEST(TableMarkers, EqualTheStepsOnRandomTables) {
    RandomTables tables(40);
    int changed = 0;
    for (int i = 0; i < 6000; ++i) {
        const std::u16string text = tables.next();
        const test::DuelOutcome outcome = test::duelAddMarkers(text);
        ASSERT_EQ(outcome.fast, outcome.literal) << tables.seed() << ::testing::PrintToString(text);
        changed += outcome.fast != text;
    }
    EXPECT_GT(changed, 400);
}

TEST(TableMarkers, PartsEqualTheStepsOnRandomTables) {
    RandomTables tables(25);
    for (int i = 0; i < 10000; ++i) {
        const std::u16string text = tables.next();
        const std::int32_t start = tables.place(text), end = tables.place(text);
        const test::DuelOutcome removed = test::duelRemoveExtraTrowd(text, start, end);
        ASSERT_EQ(removed.fast, removed.literal)
            << tables.seed() << ::testing::PrintToString(text) << start << "," << end;
        const test::DuelOutcome nested = test::duelMarkNested(text, start, end);
        ASSERT_EQ(nested.fast, nested.literal)
            << tables.seed() << ::testing::PrintToString(text) << start << "," << end;
    }
}

std::u16string repeated(std::u16string_view piece, int count) {
    std::u16string text;
    for (int i = 0; i < count; ++i) text += piece;
    return text;
}

// Each of these would take minutes if a table, a row or a word were looked at again for the next one.
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
    std::u16string rows = u"\\trowd\\irow0" + repeated(u"a\\cell\\trowd\\irow1\\row", 50000) + u"\\lastrow\\row";
    addTableMarkers(rows, guids);
    EXPECT_NE(rows.find(endTableMarker), std::u16string::npos);
}

std::u16string nestedTables(int depth) {
    std::u16string text = u"\\trowd\\irow0 ", ends;
    for (int level = depth; level >= 2; --level) {
        const std::string number = std::to_string(level);
        text += u"\\pard\\itap" + std::u16string(number.begin(), number.end()) +
                u" a\\nestcell{\\*\\nesttableprops\\trowd\\irow0\\lastrow\\nestrow}";
    }
    return text + u"\\pard\\cell\\lastrow\\row";
}

TEST(TableMarkers, MarksTablesNestedToAnyDepth) {
    std::u16string text = nestedTables(20000);
    CountedGuids guids;
    addTableMarkers(text, guids);
    std::size_t starts = 0;
    for (std::size_t at = 0; (at = text.find(startTableMarker, at)) != std::u16string::npos; ++at) ++starts;
    EXPECT_EQ(starts, 20000u);
}

}  // namespace
}  // namespace velmor
