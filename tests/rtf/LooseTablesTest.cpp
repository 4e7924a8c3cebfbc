#include "rtf/tables/LooseTables.h"

#include <gtest/gtest.h>

#include "NestedTableText.h"
#include "NumberedTables.h"
#include "Pieces.h"
#include "Random.h"
#include "rtf/tables/MarkerPairs.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

std::u16string marked(std::u16string text, bool tolerant) {
    CleanOptions options;
    options.tolerant = tolerant;
    test::CountedGuids guids;
    Module1::MarkLooseTables(text, options, guids);
    return test::withNumberedIdentities(std::move(text));
}

struct Case {
    std::u16string text;
    std::u16string plain;
    std::u16string tolerant = {};  // empty: the same
};

const Case cases[] = {
    // A document in a table, outside tables, and in a table without markers.
    {u"{\\rtf1<a:\\intbl{\\rtf1 x\\par\\pard\\trowd\\cellx9\\intbl y\\cell\\row \\pard z}\\cell\\row:a>}",
     u"{\\rtf1<a:\\intbl{\\rtf1 x\\par<1:\\pard\\trowd\\cellx9\\intbl y\\cell\\row :1>\\pard z}\\cell\\row:a>}"},
    {u"{\\rtf1<a:\\cell\\row:a>{\\rtf1\\trowd y\\cell\\row}}",
     u"{\\rtf1<a:\\cell\\row:a>{\\rtf1\\trowd y\\cell\\row}}"},
    {u"{\\rtf1\\pard\\par\\trowd\\cellx9\\pard{\\rtf1\\pard y\\cell\\trowd\\row}\\cell\\row}",
     u"{\\rtf1\\pard\\par\\trowd\\cellx9\\pard{\\rtf1\\pard y\\cell\\trowd\\row}\\cell\\row}",
     u"{\\rtf1\\pard\\par<1:\\trowd\\cellx9\\pard{\\rtf1<2:\\pard y\\cell\\trowd\\row:2>}\\cell\\row:1>}"},
    {u"{\\rtf1 x\\cell{\\rtf1<b:\\cell\\row:b>}\\cell\\row}", u"{\\rtf1 x\\cell{\\rtf1<b:\\cell\\row:b>}\\cell\\row}",
     u"{\\rtf1 <1:x\\cell{\\rtf1<b:\\cell\\row:b>}\\cell\\row:1>}"},
    // After the header of a document; tables separated by a paragraph; a run without a row.
    {u"{<a:{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}\\paperw9 x\\cell\\row\\pard y\\par\\intbl z\\cell\\row\\intbl w}:a>}",
     u"{<a:{\\rtf1\\ansi{\\fonttbl{\\f0 A;}}\\paperw9 <1:x\\cell\\row:1>\\pard y\\par<2:\\intbl z\\cell\\row:2>\\intbl "
     u"w}:a>}"},
    // A table with markers is in the row, or next to it.
    {u"{<a:{\\rtf1\\trowd\\intbl<b:\\cell\\row:b>\\cell\\row<c:\\intbl\\cell\\row:c>\\intbl\\cell\\row}:a>}",
     u"{<a:{\\rtf1<1:\\trowd\\intbl<b:\\cell\\row:b>\\cell\\row:1><c:\\intbl\\cell\\row:c><2:\\intbl\\cell\\row:2>}:a>"
     u"}"},
    // Native nested tables of a table with markers, one of which has its pair already.
    {u"{<a:\\intbl x\\par\\pard\\intbl\\itap3 t\\par\\itap2 n\\nestcell{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}{"
     u"\\nonesttables\\par}\\pard\\intbl\\cell<b:\\itap2 n\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}:b>\\row:a>}",
     u"{<a:\\intbl x\\par<1:\\pard\\intbl\\itap3 t\\par\\itap2 n\\nestcell{\\*\\nesttableprops\\trowd\\cellx9\\nestrow}"
     u":1>{\\nonesttables\\par}\\pard\\intbl\\cell<b:\\itap2 "
     u"n\\nestcell{\\*\\nesttableprops\\trowd\\nestrow}:b>\\row:a>}"},
    // Footnotes have paragraphs of their own, and data is not text.
    {u"{<a:{\\rtf1\\trowd{\\footnote\\pard\\par{\\rtf1\\trowd\\cell\\row}}\\bin4 }}}}x\\cell\\row}:a>}",
     u"{<a:{\\rtf1<1:\\trowd{\\footnote\\pard\\par{\\rtf1\\trowd\\cell\\row}}\\bin4 }}}}x\\cell\\row:1>}:a>}"},
};

TEST(LooseTables, GetTheMarkersThatConversionNeeds) {
    for (const Case& row : cases) {
        EXPECT_EQ(test::withoutMarkers(marked(test::withMarkers(row.text), false)), row.plain);
        EXPECT_EQ(test::withoutMarkers(marked(test::withMarkers(row.text), true)),
                  row.tolerant.empty() ? row.plain : row.tolerant);
    }
}

// Only pairs are added to any text, and they do not cross.
TEST(LooseTables, RandomTextsGetPairsOnly) {
    const auto pieces = test::piecesOf(
        u"<1:|:1>|<2:|:2>|<3:|:3>|\\trowd\\cellx9 |\\trowd{\\rtf1 |\\row|\\cell|a\\cell b\\cell |\\intbl |\\itap2 |"
        u"\\par|\\pard|\\nestcell |{\\*\\nesttableprops\\trowd\\cellx3\\nestrow}|{\\nonesttables\\par}|"
        u"{\\footnote \\pard x\\par\\cell}|{|}|}|x");
    Random random;
    std::size_t added = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::u16string plain = u"{\\rtf1<+:\\trowd{\\rtf1 " + random.text(pieces, 60) + u"}\\cell\\row:+>}";
        const std::u16string text = test::withMarkers(plain), result = marked(text, true);
        const std::size_t before = findMarkerPairs(text, true).size(), after = findMarkerPairs(result, true).size();
        constexpr std::size_t pair = startTableMarker.size() + endTableMarker.size() + 2 * 39;
        ASSERT_EQ(result.size(), text.size() + (after - before) / 2 * pair) << toUtf8(plain);
        added += after - before;
    }
    EXPECT_GT(added, 1000u);
}

}  // namespace
}  // namespace velmor
