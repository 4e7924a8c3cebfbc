#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "text/Encoding.h"
#include "text/Error.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

privStrCat holding(std::u16string_view text) {
    privStrCat builder;
    builder.Append(text);
    return builder;
}

template <typename Call>
std::int32_t errorOf(Call call) {
    try {
        call();
    } catch (const Error& error) {
        EXPECT_EQ(error.source(), u"VelmorStrCat");
        return error.number();
    }
    return 0;
}

TEST(Builder, GrowsByTheRateOrByWhatIsAdded) {
    privStrCat builder;
    builder.Append(u"");
    EXPECT_EQ(builder.BufferLength(), 0);
    for (int i = 0; i < 3; ++i) builder.Append(std::u16string(200, u'x'));
    EXPECT_EQ(builder.BufferLength(), 1024);
    EXPECT_EQ(builder.Length(), 600);
    EXPECT_EQ(holding(std::u16string(600, u'x')).BufferLength(), 600);
    for (const auto& [given, kept] : {std::pair(100, 255), {255, 255}, {300, 300}, {16392, 16392}, {20000, 16392}}) {
        builder.GrowthRate(given);
        EXPECT_EQ(builder.GrowthRate(), kept);
    }
}

TEST(Builder, ResetReleasesMoreThan2500Characters) {
    for (const auto& [length, kept] : {std::pair(2500, 2500), {2501, 0}}) {
        privStrCat builder = holding(std::u16string(static_cast<std::size_t>(length), u'x'));
        builder.Reset();
        EXPECT_EQ(builder.BufferLength(), kept);
        EXPECT_EQ(builder.Length(), 0);
        EXPECT_EQ(builder.spareTail(), std::u16string(static_cast<std::size_t>(kept), u'x'));
    }
}

TEST(Builder, TheTailShowsThroughSomeMembers) {
    privStrCat builder = holding(u"ab");
    EXPECT_EQ(builder.Find(u"b "), 2);
    EXPECT_EQ(builder.Find(u" "), 0);
    EXPECT_EQ(builder.Find(u"b" + std::u16string(511, u' ')), 0);  // one more than there are
    EXPECT_EQ(builder.MidStr(1, -1), u"ab" + std::u16string(510, u' '));
    EXPECT_EQ(builder.LeftStrLessBy(-2), u"ab  ");
    EXPECT_EQ(builder.LeftStrLessBy(-4000).size(), 512u);

    builder.Remove(1, 1);
    EXPECT_EQ(builder.MidStr(1, -1), u"");  // a single character is out of reach
    EXPECT_EQ(builder.Find(u"bb "), 1);
    builder.Append(u"cd");
    builder.ModifyTrimRightStr(u"d");
    builder.ModifyUCaseStr(1, -1);
    EXPECT_EQ(builder.LeftStrLessBy(-2), u"BCD ");
}

TEST(Builder, Words) {
    privStrCat builder;
    EXPECT_EQ(builder.WordCount(), 0);
    const std::pair<std::u16string_view, int> cases[] = {{u"two words", 2}, {u"  two   words  ", 2}, {u"a", 1},
                                                         {u"a\tb\rc", 3},   {u"\u8041\u8041", 1},    {u" \u8041", 0},
                                                         {u"\u0120", 0},    {u" \u0120", 1}};
    for (const auto& [text, words] : cases) EXPECT_EQ(holding(text).WordCount(), words) << toUtf8(text);
    builder.Append(u"xy z");
    builder.Reset();
    EXPECT_EQ(builder.WordCount(), 1);
    privStrCat odd;  // an odd length without a tail
    odd.AppendVal(std::u16string(601, u'x'));
    EXPECT_EQ(odd.BufferLength(), 601);
    EXPECT_EQ(odd.WordCount(), 1);
}

struct ReplaceCase {
    std::u16string_view content, sought, replacement;
    std::int32_t limit, count;
    std::u16string_view result;
};

TEST(Builder, ReplaceStopsShortOfTheEndAndCountsOnlyWhatGrows) {
    const ReplaceCase cases[] = {
        {u"aaaa", u"a", u"b", -1, 0, u"bbaa"},      {u"a-a-a-", u"a", u"bb", 1, 1, u"bb-a-a-"},
        {u"a-a-a-", u"a", u"bb", 0, 1, u"bb-a-a-"}, {u"a-a-a-", u"a", u"bb", -1, 2, u"bb-bb-a-"},
        {u"aaxx..", u"aa", u"b", 1, 0, u"bxx.."},   {u"abab..", u"a", u"", 1, 0, u"bb.."},
        {u"aaaa", u"", u"b", -1, 0, u"aaaa"},       {u"a-a-..", u"a", u"aa", -1, 2, u"aa-aa-.."},
    };
    for (const ReplaceCase& row : cases) {
        privStrCat builder = holding(row.content);
        std::int32_t start = 1, limit = row.limit;
        EXPECT_EQ(builder.Replace(row.sought, row.replacement, start, limit), row.count) << toUtf8(row.content);
        EXPECT_EQ(builder.ReturnVal(), row.result);
        EXPECT_EQ(start, 0);
    }
}

TEST(Builder, TrimsOnTheLeftSpareAContentOfNothingElse) {
    privStrCat builder = holding(u"   ");
    builder.ModifyTrimLeftStr(u" ");
    EXPECT_EQ(builder.ReturnVal(), u"   ");
    builder.ModifyTrimRightStr(u"");
    EXPECT_EQ(builder.ReturnVal(), u"   ");
    builder.ModifyTrimRightStr(u" ");
    EXPECT_EQ(builder.ReturnVal(), u"");
    builder.Append(u"-- x --");
    builder.ModifyTrimStr(u" -");
    EXPECT_EQ(builder.ReturnVal(), u"x");
}

TEST(Builder, CountsOverlappingHitsAndSkipsEscapedOnes) {
    EXPECT_EQ(holding(u"aaaa").FindCount(u"aa"), 3);
    EXPECT_EQ(holding(u"aaaa").FindCount(u"aa", 1, 2), 2);
    EXPECT_EQ(holding(u"abc").FindCount(u""), 3);
    EXPECT_EQ(holding(u"{\\{\\\\{\\\\\\{").FindCount(u"{", 1, 0, true, true), 2);
    // Quadratic, if each hit walked back through its whole run of backslashes.
    EXPECT_EQ(holding(std::u16string(200000, u'\\')).FindCount(u"\\", 1, 0, true, true), 100000);
}

TEST(Builder, BraceGroups) {
    const privStrCat builder = holding(u"x{\\A{\\b}\\}c\\\\}d}");
    std::int32_t start = -1, end = -1;
    builder.FindBraceGroupEnd(1, u"{\\a", 0, start, end);
    EXPECT_EQ(std::pair(start, end), std::pair(2, 16));  // the brace behind "\\\\" counts as escaped
    builder.ScanBraceGroupEnd(1, u"{\\a", 15, start, end);
    EXPECT_EQ(std::pair(start, end), std::pair(2, 0));
    builder.FindBraceGroupEnd(1, u"{\\c", 0, start, end);
    EXPECT_EQ(std::pair(start, end), std::pair(0, 0));
    builder.FindBraceGroupStart(8, start);
    EXPECT_EQ(start, 5);
    builder.FindBraceGroupStart(16, start);
    EXPECT_EQ(start, 0);  // every brace counts here
}

TEST(Builder, PositionsOutsideTheTextAndThe32Bits) {
    privStrCat builder = holding(u"abc");
    const std::pair<std::function<void()>, std::int32_t> cases[] = {
        {[&] { builder.Find(u"a", 0); }, 5},
        {[&] { builder.Find(u"", lowest); }, 5},
        {[&] { builder.Find(u"a", highest); }, 0},
        {[&] { builder.FindReverse(u"a", lowest); }, 0},
        {[&] { builder.Ascii(0); }, 5},
        {[&] { builder.Ascii(-1); }, 5},
        {[&] { builder.Ascii(4); }, 5},
        {[&] { builder.SubString(0, 1); }, 5},
        {[&] { builder.SubString(2, -1); }, 5},
        {[&] { builder.SubString(2, highest); }, 6},
        {[&] { builder.SubString(lowest, 0); }, 6},
        {[&] { builder.SubString(highest, highest); }, 0},
        {[&] { builder.MidStr(1, -2); }, 5},
        {[&] { builder.MidStr(2, highest); }, 6},
        {[&] { builder.MidStr(0, -1); }, 0},
        {[&] { builder.ModifyLCaseStr(2, lowest); }, 5},
        {[&] { builder.LeftStrLessBy(lowest); }, 6},
        {[&] { builder.Remove(1, highest); }, 6},
        {[&] { builder.Remove(lowest, -1); }, 0},
        {[&] { builder.RemoveFromTo(lowest, 2); }, 6},
        {[&] { builder.ModifyMidStr(0, u"x"); }, 5},
        {[&] { builder.ModifyMidStr(highest, u"x"); }, 6},
        {[&] { builder.ModifyMidStr(highest, u""); }, 0},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(errorOf(cases[i].first), cases[i].second) << i;
    EXPECT_EQ(builder.ReturnVal(), u"abc");
}

TEST(Builder, RangesThatReachBelowTheStart) {
    privStrCat builder = holding(u"abcdef");
    EXPECT_EQ(builder.Remove(0, 2), 2);
    EXPECT_EQ(builder.RemoveFromTo(0, 2), 3);
    EXPECT_EQ(builder.ReturnVal(), u"f");
    EXPECT_EQ(builder.Insert(u"x", lowest), 2);
    EXPECT_EQ(builder.Insert(u"y", highest), 3);
    EXPECT_EQ(builder.ReturnVal(), u"xfy");
}

// Never read: no machine needs to hold them.
TEST(Builder, ATextTooLongIsAsIfMemoryRanOut) {
    privStrCat builder = holding(u"abc");
    volatile std::size_t length = privStrCat::maximumLength + 1;  // the compiler would warn of the sum
    const std::u16string_view huge(u"x", length);
    builder.Append(huge);
    builder.Prepend(huge);
    EXPECT_EQ(builder.Insert(huge, 1), 3);
    EXPECT_EQ(errorOf([&] { builder.Insert(huge, 2); }), 7);
    EXPECT_EQ(errorOf([&] { builder.ModifyMidStr(2, huge); }), 7);
    EXPECT_EQ(builder.ReturnVal() + builder.spareTail(), u"abc" + std::u16string(509, u' '));
}

TEST(Builder, TextsThatAreItsOwn) {
    privStrCat builder = holding(u"0123456789");
    for (int i = 0; i < 12; ++i) builder.Append(builder.contiguous());
    EXPECT_EQ(builder.Length(), 10 << 12);
    EXPECT_EQ(builder.RightStr(10), u"0123456789");
    builder.Insert(builder.contiguous().substr(0, 5), 4);
    EXPECT_EQ(builder.LeftStr(12), u"012012343456");
    builder.ModifyMidStr(2, builder.contiguous().substr(0, 5));
    EXPECT_EQ(builder.LeftStr(8), u"00120134");
    builder.Surround(builder.contiguous().substr(0, 2), builder.contiguous().substr(2, 2));
    EXPECT_EQ(builder.LeftStr(4) + builder.RightStr(4), u"00008912");
    std::int32_t start = 1, limit = 1;
    builder.Replace(builder.contiguous().substr(4, 2), builder.contiguous().substr(0, 4), start, limit);
    EXPECT_EQ(builder.LeftStr(8), u"00000000");
}

TEST(Builder, TakesTextsOverAndGivesThemAwayWithoutCopies) {
    std::u16string text(100000, u'x');
    const char16_t* const place = text.data();
    privStrCat builder;
    builder.AppendVal(std::move(text));
    EXPECT_EQ(builder.contiguous().data(), place);
    privStrCat other = std::move(builder);
    EXPECT_EQ(builder.BufferLength(), 0);
    other.Insert(u"y", 50000);
    other.Remove(50000, 1);
    EXPECT_EQ(other.DumpVal(), std::u16string(100000, u'x'));
    EXPECT_EQ(other.BufferLength(), 0);
}

// A sweep over a long text, against the library's string, in the shapes that stages have: edits
// far apart and near the end, with a backward step now and then.
TEST(Builder, SweepsOfEdits) {
    std::u16string plain;
    for (int i = 0; i < 3000; ++i) plain += u"{\\f" + fromUtf8(std::to_string(i)) + u" text}";
    privStrCat builder = holding(plain);
    std::u16string tail;
    std::size_t index = 0;
    for (int i = 0; index + 60 < plain.size(); ++i, index += 37) {
        if (i % 5 == 4) index -= 50;
        const std::size_t count = static_cast<std::size_t>(i % 23);
        tail.insert(0, plain.substr(plain.size() - count));
        plain.erase(index, count);
        builder.Remove(static_cast<std::int32_t>(index + 1), static_cast<std::int32_t>(count));
        if (i % 3 == 0) {
            plain.insert(index, u"\\par");
            builder.Insert(u"\\par", static_cast<std::int32_t>(index + 1));
            tail.erase(0, 4);
        }
    }
    EXPECT_EQ(builder.ReturnVal(), plain);
    tail.resize(static_cast<std::size_t>(builder.BufferLength() - builder.Length()), u' ');
    EXPECT_EQ(builder.spareTail(), tail);
}

}  // namespace
}  // namespace velmor
