#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "Random.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/privStrCat.h"

namespace velmor::test {
namespace {

using namespace std::string_literals;

privStrCat holding(std::u16string_view text) {
    privStrCat builder;
    builder.Append(text);
    return builder;
}

TEST(Builder, EditsAtAnyPlaceEqualThoseOfAString) {
    constexpr std::u16string_view units = u"abAB{\\";
    Random random;
    privStrCat builder;
    std::u16string text;
    for (int step = 0; step < 5000; ++step) {
        const std::size_t at = random.below(text.size() + 1);
        const auto position = static_cast<std::int32_t>(at) + 1;
        const std::u16string part = random.text(units, random.below(200) == 0 ? 700 : 6);
        if (random.below(2) == 0) {
            builder.Insert(part, position), text.insert(at, part);
        } else {
            builder.Remove(position, static_cast<std::int32_t>(part.size())), text.erase(at, part.size());
        }
        if (random.below(4) != 0) continue;
        ASSERT_EQ(toUtf8(builder.ReturnVal()), toUtf8(text)) << step;
    }
}

constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
constexpr std::u16string_view braces = u"x{\\A{\\b}\\}c\\\\}d}", raised5 = u"VelmorStrCat 5",
                              raised6 = u"VelmorStrCat 6";

std::u16string show(std::int32_t value) {
    return fromUtf8(std::to_string(value));
}

std::u16string replaced(privStrCat& in, std::u16string_view sought, std::u16string_view by, std::int32_t limit) {
    std::int32_t start = 1;
    const std::int32_t count = in.Replace(sought, by, start, limit);
    return show(count) + u", " + show(start);
}

std::u16string groupEnd(privStrCat& in, std::int32_t limit) {
    std::int32_t start = 7, end = 7;
    in.FindBraceGroupEnd(1, u"{\\a", limit, start, end);
    return show(start) + u", " + show(end);
}

std::u16string groupStart(privStrCat& in, std::int32_t position) {
    std::int32_t start = 7;
    in.FindBraceGroupStart(position, start);
    return show(start);
}

// A tag's result whose builder has a wrong length.
struct FixedResult : ResultSource {
    FixedResult(std::u16string_view width, std::u16string_view result) : text(result) { builder->Append(width); }
    std::shared_ptr<const privStrCat> resultBuilder() override { return builder; }
    std::u16string result() override { return text; }

    std::shared_ptr<privStrCat> builder = std::make_shared<privStrCat>();
    std::u16string text;
};

std::u16string inserted(privStrCat& to, std::u16string_view width, std::u16string_view result, std::int32_t position) {
    FixedResult source(width, result);
    return show(to.InsertTagResult(source, position));
}

// Outcomes that a caller would not expect; an error as its source and number.
const struct {
    std::u16string_view content;
    std::u16string (*outcome)(privStrCat& of);
    std::u16string_view expected, after = content;
} contract[] = {
    // clang-format off
    {u"aaaa", [](auto& of) { return replaced(of, u"a", u"b", -1); }, u"0, 0", u"bbaa"},  // stops short of the end
    {u"a-a-a-", [](auto& of) { return replaced(of, u"a", u"bb", 0); }, u"1, 0", u"bb-a-a-"},
    {u"aa", [](auto& of) { return replaced(of, u"", u"b", -1); }, u"0, 0"},
    {u"abab..", [](auto& of) { return replaced(of, u"a", u"", 1); }, u"0, 0", u"bb.."},  // counts growth only
    {u"   ", [](auto& of) { return of.ModifyTrimLeftStr(u" "), u""s; }, u""},
    {u"   ", [](auto& of) { return of.ModifyTrimRightStr(u" "), u""s; }, u"", u""},
    {u" .ab. ", [](auto& of) { return of.ModifyTrimStr(u". "), u""s; }, u"", u"ab"},
    {u" ab ", [](auto& of) { return of.TrimStr() + of.TrimLeftStr() + of.TrimRightStr(); }, u"abab  ab"},
    {u"aaaa", [](auto& of) { return show(of.FindCount(u"aa")); }, u"3"},
    {u"aaaa", [](auto& of) { return show(of.FindCount(u"a", 2, 3)); }, u"2"},
    {u"abc", [](auto& of) { return show(of.FindCount(u"")); }, u"3"},
    {u"{\\{\\\\{\\\\\\{", [](auto& of) { return show(of.FindCount(u"{", 1, 0, true, true)); }, u"2"},
    {braces, [](auto& of) { return groupEnd(of, 0); }, u"2, 16"},  // the brace after "\\\\" counts as escaped
    {braces, [](auto& of) { return groupEnd(of, 15); }, u"2, 0"},
    {braces, [](auto& of) { return groupStart(of, 16); }, u"0"},  // every brace counts here
    {u"a\tb\rc", [](auto& of) { return show(of.WordCount()); }, u"3"},
    {u" \u8041", [](auto& of) { return show(of.WordCount()); }, u"0"},
    {u" \u0120", [](auto& of) { return show(of.WordCount()); }, u"1"},
    {u" !", [](auto& of) { return show(of.WordCount()); }, u"1"},
    {u"ab", [](auto& of) { return show(of.Find(u"b ")); }, u"2"},
    {u"abc", [](auto& of) { return show(of.Find(u"BC", 1, false)) + show(of.FindReverse(u"B", 3, false)); }, u"22"},
    {u"xbA", [](auto& of) { return show(of.FindContains(u"aB", 1, false)) + show(of.FindContains(u"aA")); }, u"23"},
    {u"ab", [](auto& of) { return of.LeftStrLessBy(-2); }, u"ab  "},  // includes the tail
    {u"abc", [](auto& of) { return of.LeftStrLessBy(1) + u"|" + of.LeftStrLessBy(3) + of.RightStr(2); }, u"ab|bc"},
    {u"b", [](auto& of) { return of.MidStr(1); }, u""},
    {u"abc", [](auto& of) { return of.MidStr(2) + of.MidStr(3) + of.MidStr(1).substr(0, 5); }, u"bcabc  "},
    {u"abc", [](auto& of) { return show(of.Find(u"a", 0)); }, raised5},
    {u"abc", [](auto& of) { return show(of.Ascii(4)); }, raised5},
    {u"abc", [](auto& of) { return of.SubString(2, highest); }, raised6},
    {u"abc", [](auto& of) { return show(of.Remove(1, highest)); }, raised6},
    {u"abcdef", [](auto& of) { return show(of.Remove(0, 2)); }, u"2", u"cdef"},
    {u"abcdef", [](auto& of) { return show(of.Remove(5, 7)); }, u"2", u"abcd"},
    {u"abcdef", [](auto& of) { return show(of.RemoveFromTo(0, 2)); }, u"3", u"def"},
    {u"abcdef", [](auto& of) { return show(of.RemoveFromTo(3, 3)); }, u"1", u"abdef"},
    {u"abcdef", [](auto& of) { return show(of.RemoveFromTo(5, -1)); }, u"2", u"abcd"},
    {u"abc", [](auto& of) { return of.ModifyMidStr(2, u"XYZ"), u""s; }, u"", u"aXYZ"},
    {u"abcd", [](auto& of) { return of.ModifyMidStr(3, u"X"), of.ModifyMidStr(4, u"X"), u""s; }, u"", u"abXd"},
    {u"abc", [](auto& of) { return of.ModifyUCaseStr(2, 1), of.ModifyUCaseStr(3), u""s; }, u"", u"aBc"},
    {u"abc", [](auto& of) { return of.ModifyMidStr(0, u"xyz"), u""s; }, u""},
    {u"abcd", [](auto& of) { return of.Insert(u"X", 3), show(of.FindReverse(u"Xc")); }, u"3", u"abXcd"},
    {u"abcd", [](auto& of) { return inserted(of, u"123", u"x", 2); }, u"7", u"axcdbcd"},  // keeps what the width held
    {u"abcd", [](auto& of) { return inserted(of, u"1", u"xyz", 2); }, u"5", u"axbcd"},
    {u"abcd", [](auto& of) { return inserted(of, u"1", u"xyz", 1); }, u"7", u"xyzabcd"},
    // clang-format on
};

TEST(Builder, FollowsItsContract) {
    for (const auto& row : contract) {
        privStrCat builder = holding(row.content);
        std::u16string outcome;
        try {
            outcome = row.outcome(builder);
        } catch (const Error& error) {
            outcome = error.source() + u" " + show(error.number());
        }
        SCOPED_TRACE(&row - contract);
        EXPECT_EQ(toUtf8(outcome), toUtf8(row.expected)) << toUtf8(row.content);
        EXPECT_EQ(toUtf8(builder.ReturnVal()), toUtf8(row.after)) << toUtf8(row.content);
    }
}

// The tail keeps the old content's end, whatever happens to the content.
TEST(Builder, OverwritesWithoutTouchingTheTail) {
    privStrCat builder = holding(u"abcdef");
    builder.Remove(1, 2);
    builder.ModifyMidStr(2, u"XY");
    EXPECT_EQ(builder.ReturnVal() + builder.spareTail().substr(0, 2), u"cXYfef");
    builder.ModifyUCaseStr();  // of the whole content: the tail changes as well
    builder.Append(u"g");
    EXPECT_EQ(builder.ReturnVal() + builder.spareTail().substr(0, 2), u"CXYFgF ");
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
