#include "rtf/read/Module1.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rtf/edit/ProtectRTF.h"
#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

using namespace Module1;

constexpr bool plain = false;
constexpr bool delimited = true;

privStrCat builderOf(std::u16string_view text) {
    privStrCat builder;
    builder.Append(text);
    return builder;
}

TEST(Module1, LineFeedsAndDigitsAreNotDelimiters) {
    for (unsigned unit = 0; unit < 0x10000; ++unit) {
        EXPECT_EQ(isDelimiter(static_cast<char16_t>(unit)),
                  std::u16string_view(u"\r \\{}").find(static_cast<char16_t>(unit)) != std::u16string_view::npos);
    }
}

TEST(Module1, PositionsOutsideTheTextAreNotFound) {
    const privStrCat builder = builderOf(u"\\row ");
    for (const std::int32_t start : {INT32_MIN, -1, 0, 6, INT32_MAX}) {
        EXPECT_EQ(FindRTFWord(start, builder, u"\\row", binaryCompare, plain), 0) << start;
        EXPECT_EQ(FindRTFWordInText(start, u"\\row ", u"\\row", binaryCompare, plain), 0) << start;
        EXPECT_EQ(CountRTFWord(start, u"\\row ", u"\\row", 0, binaryCompare, true), 0) << start;
        EXPECT_EQ(FindFirstOfAny(start, u"\\row ", u"r", binaryCompare), 0) << start;
        EXPECT_EQ(FindGroupEnd(start, u"\\row ", u"r", 0).start, 0) << start;
    }
    for (const std::int32_t start : {INT32_MIN, -2, 0, 3}) {
        EXPECT_EQ(FindRTFWordReverse(builder, u"\\row", start, binaryCompare, plain), 0) << start;
        EXPECT_EQ(FindRTFWordInTextReverse(u"\\row ", u"\\row", start, binaryCompare, plain), 0) << start;
    }
}

struct Search {
    std::u16string_view text, sought;
    std::int32_t from;  // a search in reverse ends there
    // Of words, and of words before a delimiter; of matches, and of unescaped ones.
    std::int32_t inBuilder[2], inText[2], inReverse[2], count[2];
};

const Search searches[] = {
    {u"a\\row b", u"\\row", 1, {2, 2}, {2, 2}, {}, {1, 1}},
    {u"a\\row b\\rowd\\row", u"\\row", 3, {8, 8}, {8, 0}, {}, {2, 2}},
    {u"\\row b\\rowd\\row", u"\\row", -1, {1, 1}, {}, {12, 1}, {}},
    {u"\\\\row\\\\\\row \\\\row", u"\\row", 1, {8, 8}, {8, 8}, {}, {3, 1}},
    {u"\\\\row\\\\\\row \\\\row", u"\\row", -1, {8, 8}, {}, {8, 8}, {}},
    {u"xrow \\row{\\\\row", u"row", 1, {2, 2}, {}, {}, {3, 0}},
    {u"xrow \\row{\\\\row", u"row", -1, {2, 2}, {}, {}, {}},
    {u"\\{a{\\\\{", u"{", 1, {4, 4}, {}, {}, {3, 0}},
    {u"\\\\\\ \\", u"\\", 1, {1, 1}, {1, 1}, {1, 1}, {4, 3}},
    {u"\\\\\\ \\", u"\\", -1, {1, 1}, {}, {5, 3}, {}},
    {u"\\ROW ", u"\\row", 1, {}, {}, {}, {}},
    {u"\\row", u"w ", 1, {4, 4}, {}, {}, {}},
    {u"r\\o", u"", 2, {2, 2}, {2, 2}, {2, 2}, {2, 1}},
    {u"\\o", u"", -1, {1, 1}, {}, {1, 1}, {}},
    {u"\\rowx", u"\\row", 1, {1, 0}, {1, 0}, {}, {1, 1}},
};

TEST(Module1, SearchesFollowTheirRules) {
    for (const auto& [text, sought, from, inBuilder, inText, inReverse, count] : searches) {
        SCOPED_TRACE(toUtf8(sought) + " in " + toUtf8(text) + " from " + std::to_string(from));
        const privStrCat builder = builderOf(text);
        for (const bool test : {plain, delimited}) {
            EXPECT_EQ(FindRTFWord(std::max(from, 1), builder, sought, binaryCompare, test), inBuilder[test]);
            EXPECT_EQ(FindRTFWordInText(from, text, sought, binaryCompare, test), inText[test]);
            EXPECT_EQ(FindRTFWordReverse(builder, sought, from, binaryCompare, test), inReverse[test]);
            EXPECT_EQ(FindRTFWordInTextReverse(text, sought, from, binaryCompare, test), inReverse[test]);
            EXPECT_EQ(CountRTFWord(from, text, sought, 0, binaryCompare, test), count[test]);
        }
    }
    EXPECT_EQ(FindRTFWord(1, builderOf(u"\\ROW "), u"\\row", textCompare, delimited), 1);
    EXPECT_EQ(FindRTFWordInText(1, u"\\ROW ", u"\\row", textCompare, delimited), 1);
    EXPECT_EQ(CountRTFWord(1, u"\\r\\r\\r", u"\\r", 4, binaryCompare, true), 2);
}

TEST(Module1, FindsGroupsAndCharacters) {
    const struct {
        std::u16string_view text, opening;
        std::int32_t from, limit, start, end;
    } groups[] = {
        {u"a{\\b{c}d}e}", u"{\\B", 1, 0, 2, 9},
        {u"a{\\b{c}d}e}", u"{", 3, 0, 5, 7},
        {u"{\\}\\{}", u"{", 1, 0, 1, 6},
        {u"{a\\\\}}", u"{", 1, 0, 1, 6},
        {u"{a}", u"{", 1, 2, 1, 0},
        {u"{a}", u"{", 1, 3, 1, 3},
        {u"{a}", u"{", 1, -1, 1, 0},
        {u"a}", u"{", 1, 0, 0, 0},
    };
    for (const auto& [text, opening, from, limit, start, end] : groups) {
        const GroupExtent group = FindGroupEnd(from, text, opening, limit);
        EXPECT_EQ(std::pair(group.start, group.end), std::pair(start, end)) << toUtf8(text);
    }
    EXPECT_EQ(FindFirstOfAny(2, u"}aO{", u"o}", textCompare), 3);
    EXPECT_EQ(FindFirstOfAny(1, u"}aO{", u"o{", binaryCompare), 4);
    EXPECT_EQ(FindFirstOfAny(1, u"a", u"", textCompare), 0);
}

TEST(Module1, ReplacesWords) {
    const struct {
        std::u16string_view text, sought, replacement;
        std::int32_t count;
        std::u16string_view after;
    } cases[] = {
        {u"\\r\\\\r\\r", u"\\r", u"\\R", -1, u"\\R\\\\r\\R"},
        {u"xrr", u"r", u"rr", -1, u"xrrrr"},
        {u"xrr", u"r", u"rr", 1, u"xrrr"},
        {u"rowow", u"ow", u"", -1, u"r"},
        {u"o", u"o", u"O", -1, u"O"},
        {u"a\\b", u"\\", u"\\\\", -1, u"a\\\\b"},
        {u"row", u"w ", u"W-", -1, u"row"},  // the tail is not text
    };
    for (const auto& [text, sought, replacement, count, after] : cases) {
        privStrCat builder = builderOf(text);
        ReplaceRTFWord(builder, sought, replacement, 1, count, binaryCompare);
        EXPECT_EQ(toUtf8(builder.ReturnVal()), toUtf8(after)) << toUtf8(text);
    }
}

// Each of these takes minutes if a place is read again for every match.
TEST(Module1, LongRunsOfBackslashesStayCheap) {
    const std::u16string run(1000000, u'\\');
    EXPECT_EQ(CountRTFWord(1, run, u"\\", 0, binaryCompare, true), 500000);
    privStrCat builder = builderOf(run);
    ReplaceRTFWord(builder, u"\\", u"\\", 1, -1, binaryCompare);
    EXPECT_EQ(builder.Length(), 1000000);
    EXPECT_EQ(FindRTFWord(1, builderOf(run + u"\\row;"), u"\\row", binaryCompare, delimited), 0);
    const std::u16string groups(1000000, u'{');
    EXPECT_EQ(FindGroupEnd(1, groups, u"{", 0).end, 0);
}

struct ValueCase {
    std::u16string_view text;
    std::int32_t expected;
};

const ValueCase valueCases[] = {
    {u"\\paperw12240\\paperh15840", 12240},
    {u"\\paperw", 0},
    {u"\\paperw12240", 0},  // no end
    {u"\\paperw-1440 ", -1440},
    {u"\\paperw2147483647}", 2147483647},
    {u"\\paperw-2147483648}", INT32_MIN},
    {u"\\paperw2147483648}", 0},
    {u"\\paperw99999999999999999999}", 0},
    {u"\\paperw\\x", 0},
    {u"\\paperw-\\x", 0},
    {u"\\paperw+7\\x", 0},
    {u"\\paperw1.5\\x", 0},
    {u"\\\\paperw7\\paperw8 ", 8},
};

TEST(Module1, ReadsTheNumberOfAWord) {
    for (const ValueCase& row : valueCases) {
        EXPECT_EQ(GetRTFWordValue(row.text, u"\\paperw", u"", u""), row.expected)
            << ::testing::PrintToString(std::u16string(row.text));
    }
    // The second text counts only when the first word is absent, not when it has no number.
    EXPECT_EQ(GetRTFWordValue(u"\\sectd", u"\\pgwsxn", u"\\paperw5 ", u"\\paperw"), 5);
    EXPECT_EQ(GetRTFWordValue(u"\\pgwsxnx ", u"\\pgwsxn", u"\\paperw5 ", u"\\paperw"), 0);
}

TEST(Module1, TrimsAndSwaps) {
    privStrCat builder = builderOf(u" a b  ");
    TrimTrailingSpace(builder);
    EXPECT_EQ(builder.ReturnVal(), u" a b");
    std::int32_t first = 1, second = 2;
    SwapValues(first, second);
    EXPECT_EQ(first * 10 + second, 21);
}

std::u16string protectedText(std::u16string text) {
    ProtectRTFCode(text);
    return text;
}

const std::pair<std::u16string, std::u16string> protectCases[] = {
    {u"", u""},
    {u"plain", u"plain"},
    {u"a{b}c\\d", u"a\\{b\\}c\\\\d"},
    {u"line1\r\nline2", u"line1\\par line2"},
    {u"\r\n", u"\\par "},
    {u"\n\r\r\n\n\r", u"\n\r\\par \n\r"},
    {u"{\\rtf1\\ansi {x}}", u"{\\rtf1\\ansi {x}}"},
    {u"{\\rtf1", u"{\\rtf1"},
    {u"{\\RTF1}", u"\\{\\\\RTF1\\}"},
    {u"{\\rtf", u"\\{\\\\rtf"},
    {u"\r\r\n\\\r\n\n{", u"\r\\par \\\\\\par \n\\{"},
    {u" {\\rtf1}", u" \\{\\\\rtf1\\}"},
};

TEST(ProtectRTF, EscapesPlainTextAndLeavesDocuments) {
    for (const auto& [text, expected] : protectCases) EXPECT_EQ(protectedText(text), expected);
}

}  // namespace
}  // namespace velmor
