#include <gtest/gtest.h>

#include "BuilderDuel.h"
#include "Random.h"

namespace velmor::test {
namespace {

privStrCat holding(std::u16string_view text) {
    privStrCat builder;
    builder.Append(text);
    return builder;
}

// Every member, in random order, on random texts, positions and extremes.
TEST(Builder, RandomCallsEqualTheFlatBuffer) {
    const unsigned first = testSeed();
    for (unsigned seed = first; seed != first + 1000; ++seed) {
        const auto bytes = Random(seed).bytes(1500);
        ASSERT_EQ(BuilderDuel(bytes.data(), bytes.size()).run(), "") << "seed " << seed;
    }
}

// Outcomes that a caller would not expect. The flat buffer must have them too.
TEST(Builder, FollowsItsContract) {
    const std::u16string_view braces = u"x{\\A{\\b}\\}c\\\\}d}", raised5 = u"VelmorStrCat 5",
                              raised6 = u"VelmorStrCat 6";
    const struct {
        std::u16string_view content;
        Call call;
        std::u16string_view outcome, after = content;
    } cases[] = {
        // clang-format off
        {u"aaaa", {"Replace", 1, -1, u"a", u"b"}, u"0, 0", u"bbaa"},  // stops short of the end
        {u"a-a-a-", {"Replace", 1, 0, u"a", u"bb"}, u"0, 1", u"bb-a-a-"}, {u"aa", {"Replace", 1, -1, u"", u"b"}, u"0, 0"},
        {u"abab..", {"Replace", 1, 1, u"a", u""}, u"0, 0", u"bb.."},  // counts growth only
        {u"   ", {"ModifyTrimLeftStr", 0, 0, u" "}, u""}, {u"   ", {"ModifyTrimRightStr", 0, 0, u" "}, u"", u""},
        {u"aaaa", {"FindCount", 1, 0, u"aa"}, u"3"}, {u"abc", {"FindCount", 1, 0, u""}, u"3"},
        {u"{\\{\\\\{\\\\\\{", {"FindCount", 1, 0, u"{", u"", true, true}, u"2"},
        {braces, {"FindBraceGroupEnd", 1, 0, u"{\\a"}, u"2, 16"},  // the brace after "\\\\" counts as escaped
        {braces, {"FindBraceGroupStart", 16}, u"0"},  // every brace counts here
        {u"a\tb\rc", {"WordCount"}, u"3"}, {u" \u8041", {"WordCount"}, u"0"}, {u" \u0120", {"WordCount"}, u"1"},
        {u"ab", {"Find", 1, 0, u"b "}, u"2"}, {u"ab", {"LeftStrLessBy", -2}, u"ab  "},  // includes the tail
        {u"b", {"MidStr", 1, -1}, u""}, {u"abc", {"Find", 0, 0, u"a"}, raised5}, {u"abc", {"Ascii", 4}, raised5},
        {u"abc", {"SubString", 2, highest}, raised6}, {u"abc", {"Remove", 1, highest}, raised6},
        {u"abcdef", {"Remove", 0, 2}, u"2", u"cdef"}, {u"abcdef", {"RemoveFromTo", 0, 2}, u"3", u"def"},
        // clang-format on
    };
    const auto check = [](auto builder, const auto& row) {
        builder.Append(row.content);
        EXPECT_EQ(outcome(builder, row.call), row.outcome) << show(row.call);
        EXPECT_EQ(builder.ReturnVal(), row.after) << show(row.call);
    };
    for (const auto& row : cases) check(privStrCat(), row), check(LiteralBuilder(), row);
}

// The tail keeps the old content's end, whatever happens to the content.
TEST(Builder, OverwritesWithoutTouchingTheTail) {
    privStrCat builder = holding(u"abcdef");
    builder.Remove(1, 2);
    builder.ModifyMidStr(2, u"XY");
    EXPECT_EQ(builder.ReturnVal() + builder.spareTail().substr(0, 2), u"cXYfef");
}

// Quadratic, if each hit walked back through its whole run of backslashes.
TEST(Builder, CountsInALongRunOfBackslashes) {
    EXPECT_EQ(holding(std::u16string(200000, u'\\')).FindCount(u"\\", 1, 0, true, true), 100000);
}

TEST(Builder, ATextThatIsTooLongFailsLikeFullMemory) {
    privStrCat builder = holding(u"abc");
    volatile std::size_t length = privStrCat::maximumLength + 1;  // the compiler would warn of the sum
    const std::u16string_view huge(u"x", length);                 // never read
    builder.Append(huge);
    builder.Prepend(huge);
    EXPECT_EQ(builder.Insert(huge, 1), 3);
    EXPECT_THROW(builder.Insert(huge, 2), Error);
    EXPECT_THROW(builder.ModifyMidStr(2, huge), Error);
    EXPECT_EQ(builder.ReturnVal() + builder.spareTail(), u"abc" + std::u16string(509, u' '));
}

TEST(Builder, AcceptsItsOwnTextAsArgument) {
    privStrCat builder = holding(u"0123456789");
    const auto own = [&](std::size_t from, std::size_t count) { return builder.contiguous().substr(from, count); };
    for (int i = 0; i < 12; ++i) builder.Append(builder.contiguous());
    EXPECT_EQ(builder.Length(), 10 << 12);
    EXPECT_EQ(builder.RightStr(10), u"0123456789");
    builder.Insert(own(0, 5), 4);
    builder.ModifyMidStr(2, own(0, 5));
    EXPECT_EQ(builder.LeftStr(8), u"00120134");
    builder.Surround(own(0, 2), own(2, 2));
    EXPECT_EQ(builder.LeftStr(4) + builder.RightStr(4), u"00008912");
    std::int32_t start = 1, limit = 1;
    builder.Replace(own(4, 2), own(0, 4), start, limit);
    EXPECT_EQ(builder.LeftStr(8), u"00000000");
}

TEST(Builder, MovesTextsInAndOutWithoutCopies) {
    std::u16string text(100000, u'x');
    const char16_t* const place = text.data();
    privStrCat builder;
    builder.AppendVal(std::move(text));
    privStrCat other = std::move(builder);
    EXPECT_EQ(builder.BufferLength(), 0);
    EXPECT_EQ(other.contiguous().data(), place);
    EXPECT_EQ(other.DumpVal().data(), place);
    EXPECT_EQ(other.BufferLength(), 0);
}

}  // namespace
}  // namespace velmor::test
