#include "rtf/read/Module1.h"

#include <gtest/gtest.h>

#include "LiteralModule1.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

using namespace Module1;
using test::LiteralBuffer;

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

// Every text of up to `longest` symbols of the alphabet.
template <typename Visit>
void forAllTexts(std::size_t longest, Visit visit) {
    constexpr std::u16string_view alphabet = u"\\{}row ";
    std::u16string text;
    for (std::size_t length = 0; length <= longest; ++length) {
        text.assign(length, alphabet[0]);
        std::vector<std::size_t> digits(length, 0);
        for (std::size_t i = 0;;) {
            visit(text);
            for (i = 0; i < length && ++digits[i] == alphabet.size(); ++i) text[i] = alphabet[digits[i] = 0];
            if (i == length) break;
            text[i] = alphabet[digits[i]];
        }
    }
}

const std::u16string exhaustiveWords[] = {u"\\row", u"\\r", u"\\", u"{", u"w ", u""};

#define SAME(actual, expected, ...)                                                                          \
    ASSERT_EQ(actual, expected) << ::testing::PrintToString(text) << " " << ::testing::PrintToString(sought) \
                                << __VA_ARGS__

TEST(Module1, SearchesTextsLikeTheirRules) {
    const auto hold = [](const std::u16string& text, const std::u16string& sought, std::int32_t from,
                         std::int32_t compare) {
        const auto length = static_cast<std::int32_t>(text.size());
        const bool anyCase = compare == textCompare;
        const LiteralBuffer literal{text, length};
        for (const bool test : {plain, delimited}) {
            SAME(FindRTFWordInText(from, text, sought, compare, test),
                 literal.findRTFWordForward(from, sought, anyCase, test), from << test);
            SAME(FindRTFWordInTextReverse(text, sought, length - from + 1, compare, test),
                 literal.findRTFWordReverse(sought, length - from + 1, anyCase, test), from << test);
            SAME(CountRTFWord(from, text, sought, length - from, binaryCompare, test),
                 literal.count(from, sought, length - from, test), from << test);
        }
    };
    forAllTexts(7, [&](const std::u16string& text) { hold(text, u"\\row", 1, binaryCompare); });
    forAllTexts(4, [&](const std::u16string& text) {
        for (const std::u16string& sought : exhaustiveWords) {
            for (std::int32_t p = 1; p <= static_cast<std::int32_t>(text.size()); ++p)
                hold(text, sought, p, textCompare);
        }
    });
}

// One builder for all texts, so that stale text follows the content.
class ExhaustiveBuilder {
public:
    const privStrCat& set(const std::u16string& text) {
        builder_.Reset();
        builder_.Append(text);
        literal_.buffer = text + builder_.spareTail().substr(0, 4);
        literal_.length = static_cast<std::int32_t>(text.size());
        return builder_;
    }
    const LiteralBuffer& literal() const { return literal_; }

private:
    privStrCat builder_;
    LiteralBuffer literal_;
};

TEST(Module1, SearchesBuildersLikeTheirRules) {
    ExhaustiveBuilder both;
    const auto hold = [&](const std::u16string& text, const std::u16string& sought, std::int32_t from,
                          std::int32_t backFrom) {
        const privStrCat& builder = both.set(text);
        for (const bool test : {plain, delimited}) {
            SAME(FindRTFWord(from, builder, sought, binaryCompare, test),
                 both.literal().findRTFWord(from, sought, false, test), from << test);
            SAME(FindRTFWordReverse(builder, sought, backFrom, binaryCompare, test),
                 both.literal().findRTFWordReverse(sought, backFrom, false, test), backFrom << test);
        }
    };
    forAllTexts(6, [&](const std::u16string& text) {
        if (text.size() < 6 || text.find(u'r') != std::u16string::npos) hold(text, u"\\row", 1, -1);
    });
    forAllTexts(4, [&](const std::u16string& text) {
        for (const std::u16string& sought : exhaustiveWords) {
            for (std::int32_t p = -1; p <= 5; ++p) hold(text, sought, p, p);
        }
    });
}

TEST(Module1, FindsGroupsAndCharactersLikeTheirRules) {
    forAllTexts(5, [](const std::u16string& text) {
        const std::u16string sets[] = {u"", u"O", u"}w ", u"\\{} \r"};
        const LiteralBuffer literal{text, static_cast<std::int32_t>(text.size())};
        for (std::int32_t p = 1; p <= 5; ++p) {
            for (const std::u16string& sought : sets) {
                SAME(FindFirstOfAny(p, text, sought, textCompare), literal.firstOfAny(p, sought, true), p);
            }
            const std::u16string sought = u"{";
            for (const std::int32_t limit : {0, p + 2}) {
                const GroupExtent group = FindGroupEnd(p, text, sought, limit);
                SAME(std::pair(group.start, group.end), literal.groupEnd(p, sought, limit), p << limit);
            }
        }
    });
}

TEST(Module1, ReplacesLikeTheRule) {
    const std::pair<std::u16string, std::u16string> replacements[] = {{u"\\r", u"\\R"}, {u"r", u"rr"},    {u"o", u"O"},
                                                                      {u"w ", u"W-"},   {u"\\", u"\\\\"}, {u"ow", u""}};
    forAllTexts(5, [&](const std::u16string& text) {
        for (const auto& [sought, replacement] : replacements) {
            for (const std::int32_t count : {-1, 1}) {
                privStrCat builder = builderOf(text);
                LiteralBuffer literal{text + std::u16string(4, u' '), static_cast<std::int32_t>(text.size())};
                ReplaceRTFWord(builder, sought, replacement, 1, count, binaryCompare);
                literal.replaceRTFWord(sought, replacement, 1, count);
                SAME(builder.ReturnVal(), literal.buffer.substr(0, static_cast<std::size_t>(literal.length)), count);
            }
        }
    });
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

}  // namespace
}  // namespace velmor
