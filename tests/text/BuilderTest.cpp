#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "BuilderDuel.h"
#include "Seed.h"

namespace velmor::test {
namespace {

privStrCat holding(std::u16string_view text) {
    privStrCat builder;
    builder.Append(text);
    return builder;
}

// Every member, in random order, on random texts, positions and extremes.
TEST(Builder, RandomCallsGiveWhatTheFlatBufferGives) {
    const unsigned first = testSeed();
    for (unsigned seed = first; seed != first + 1000; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(random() % 1500);
        for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
        ASSERT_EQ(BuilderDuel(bytes.data(), bytes.size()).run(), "") << "seed " << seed;
    }
}

struct CallCase {
    std::u16string_view content;
    Call call;
    std::u16string_view outcome;
    std::u16string_view contentAfter = content;
};

// The edges that a caller may meet; the flat buffer is held to them too.
TEST(Builder, GivesWhatIsPromisedAtTheEdges) {
    // clang-format off
    const std::u16string_view braces = u"x{\\A{\\b}\\}c\\\\}d}", invalid = u"VelmorStrCat 5",
                              overflow = u"VelmorStrCat 6";
    const CallCase cases[] = {
        // Replacing stops short of the end, and counts only what grows.
        {u"aaaa", {"Replace", 1, -1, u"a", u"b"}, u"0, 0", u"bbaa"},
        {u"a-a-a-", {"Replace", 1, 1, u"a", u"bb"}, u"0, 1", u"bb-a-a-"},
        {u"a-a-a-", {"Replace", 1, 0, u"a", u"bb"}, u"0, 1", u"bb-a-a-"},
        {u"a-a-a-", {"Replace", 1, -1, u"a", u"bb"}, u"0, 2", u"bb-bb-a-"},
        {u"aaxx..", {"Replace", 1, 1, u"aa", u"b"}, u"0, 0", u"bxx.."},
        {u"abab..", {"Replace", 1, 1, u"a", u""}, u"0, 0", u"bb.."},
        {u"aaaa", {"Replace", 1, -1, u"", u"b"}, u"0, 0"},
        // Trims on the left spare a content of nothing else.
        {u"   ", {"ModifyTrimLeftStr", 0, 0, u" "}, u""}, {u"   ", {"ModifyTrimRightStr", 0, 0, u""}, u""},
        {u"   ", {"ModifyTrimRightStr", 0, 0, u" "}, u"", u""},
        {u"-- x --", {"ModifyTrimStr", 0, 0, u" -"}, u"", u"x"},
        // Counts take overlapping hits in, and leave escaped ones out.
        {u"aaaa", {"FindCount", 1, 0, u"aa"}, u"3"}, {u"aaaa", {"FindCount", 1, 2, u"aa"}, u"2"},
        {u"abc", {"FindCount", 1, 0, u""}, u"3"},
        {u"{\\{\\\\{\\\\\\{", {"FindCount", 1, 0, u"{", u"", true, true}, u"2"},
        {braces, {"FindBraceGroupEnd", 1, 0, u"{\\a"}, u"2, 16"},  // the brace behind "\\\\" counts as escaped
        {braces, {"ScanBraceGroupEnd", 1, 15, u"{\\a"}, u"2, 0"},
        {braces, {"FindBraceGroupEnd", 1, 0, u"{\\c"}, u"0, 0"}, {braces, {"FindBraceGroupStart", 8}, u"5"},
        {braces, {"FindBraceGroupStart", 16}, u"0"},  // every brace counts here
        // Words, as pairs of units tell.
        {u"", {"WordCount"}, u"0"}, {u"  two   words  ", {"WordCount"}, u"2"}, {u"a\tb\rc", {"WordCount"}, u"3"},
        {u"\u8041\u8041", {"WordCount"}, u"1"}, {u" \u8041", {"WordCount"}, u"0"}, {u"\u0120", {"WordCount"}, u"0"},
        {u" \u0120", {"WordCount"}, u"1"},
        // Some members see the spare tail, which is blank here; a single character is out of MidStr's reach.
        {u"ab", {"Find", 1, 0, u"b "}, u"2"}, {u"ab", {"Find", 1, 0, u" "}, u"0"},
        {u"ab", {"LeftStrLessBy", -2}, u"ab  "}, {u"b", {"MidStr", 1, -1}, u""},
        // Positions outside the text and the 32 bits.
        {u"abc", {"Find", 0, 0, u"a"}, invalid}, {u"abc", {"Find", highest, 0, u"a"}, u"0"},
        {u"abc", {"FindReverse", lowest, 0, u"a"}, u"0"}, {u"abc", {"Ascii", 0}, invalid},
        {u"abc", {"Ascii", 4}, invalid}, {u"abc", {"SubString", 0, 1}, invalid},
        {u"abc", {"SubString", 2, -1}, invalid}, {u"abc", {"SubString", 2, highest}, overflow},
        {u"abc", {"SubString", highest, highest}, u""}, {u"abc", {"MidStr", 1, -2}, invalid},
        {u"abc", {"MidStr", 2, highest}, overflow}, {u"abc", {"ModifyLCaseStr", 2, lowest}, invalid},
        {u"abc", {"LeftStrLessBy", lowest}, overflow}, {u"abc", {"Remove", 1, highest}, overflow},
        {u"abc", {"Remove", lowest, -1}, u"0"}, {u"abcdef", {"Remove", 0, 2}, u"2", u"cdef"},
        {u"abcdef", {"RemoveFromTo", 0, 2}, u"3", u"def"}, {u"abc", {"RemoveFromTo", lowest, 2}, overflow},
        {u"abc", {"Insert", lowest, 0, u"x"}, u"4", u"xabc"}, {u"abc", {"Insert", highest, 0, u"x"}, u"4", u"abcx"},
        {u"abc", {"ModifyMidStr", 0, 0, u"x"}, invalid}, {u"abc", {"ModifyMidStr", highest, 0, u"x"}, overflow},
    };
    // clang-format on
    const auto check = [](auto builder, const CallCase& row) {
        builder.Append(row.content);
        EXPECT_EQ(outcome(builder, row.call), row.outcome) << show(row.call);
        EXPECT_EQ(builder.ReturnVal(), row.contentAfter) << show(row.call);
    };
    for (const CallCase& row : cases) {
        check(privStrCat(), row);
        check(LiteralBuilder(), row);
    }
}

TEST(Builder, GrowsByTheRateAndIsReleasedAbove2500Characters) {
    privStrCat builder;
    builder.Append(u"");
    EXPECT_EQ(builder.BufferLength(), 0);
    for (int i = 0; i < 3; ++i) builder.Append(std::u16string(200, u'x'));
    EXPECT_EQ(builder.BufferLength(), 1024);
    EXPECT_EQ(holding(std::u16string(600, u'x')).BufferLength(), 600);
    for (const auto& [given, kept] : {std::pair(100, 255), {255, 255}, {300, 300}, {16392, 16392}, {20000, 16392}}) {
        builder.GrowthRate(given);
        EXPECT_EQ(builder.GrowthRate(), kept);
    }
    for (const auto& [length, kept] : {std::pair(2500u, 2500u), {2501u, 0u}}) {
        builder = holding(std::u16string(length, u'x'));
        builder.Reset();
        EXPECT_EQ(builder.Length(), 0);
        EXPECT_EQ(builder.spareTail(), std::u16string(kept, u'x'));
    }
}

// Quadratic, if each hit walked back through its whole run of backslashes.
TEST(Builder, CountsInALongRunOfBackslashes) {
    EXPECT_EQ(holding(std::u16string(200000, u'\\')).FindCount(u"\\", 1, 0, true, true), 100000);
}

// Never read: no machine needs to hold them.
TEST(Builder, ATextTooLongIsAsIfMemoryRanOut) {
    privStrCat builder = holding(u"abc");
    volatile std::size_t length = privStrCat::maximumLength + 1;  // the compiler would warn of the sum
    const std::u16string_view huge(u"x", length);
    builder.Append(huge);
    builder.Prepend(huge);
    EXPECT_EQ(builder.Insert(huge, 1), 3);
    EXPECT_THROW(builder.Insert(huge, 2), Error);
    EXPECT_THROW(builder.ModifyMidStr(2, huge), Error);
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
    std::u16string plain, tail;
    for (int i = 0; i < 3000; ++i) plain += u"{\\f" + fromUtf8(std::to_string(i)) + u" text}";
    privStrCat builder = holding(plain);
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
}  // namespace velmor::test
