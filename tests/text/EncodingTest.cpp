#include "text/Encoding.h"

#include <gtest/gtest.h>

#include "Random.h"

namespace velmor {
namespace {

TEST(Utf8, EveryUnitAndRandomTextsSurviveARoundTrip) {
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string text = std::u16string(u"eight..9") + static_cast<char16_t>(unit) + u'b';
        ASSERT_EQ(fromUtf8(toUtf8(text)), text) << unit;
    }
    Random random;
    const char16_t units[] = {u'a', u'\0', 0xE9, 0x20AC, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xFFFF, 0xFEFF};
    for (int round = 0; round < 2000; ++round) {
        const std::u16string text = random.text(units, 11);
        ASSERT_EQ(fromUtf8(toUtf8(text)), text) << toUtf8(text);
    }
    EXPECT_EQ(toUtf8(u"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toUtf8(u"\xD83D"), "\xED\xA0\xBD");
}

TEST(Utf8, EachBrokenSequenceIsOneReplacement) {
    const std::pair<std::string_view, std::u16string_view> cases[] = {
        {"a\x80z", u"a\uFFFDz"},
        {"\xC0\xAF", u"\uFFFD\uFFFD"},            // overlong
        {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},  // overlong
        {"\xE2\x82", u"\uFFFD"},                  // truncated at the end
        {"\xE2\x82z", u"\uFFFDz"},                // and before the end
        {"\xF0\x9F\x98\x41", u"\uFFFDA"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
        {"\xFF\xFE", u"\uFFFD\uFFFD"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(fromUtf8(bytes), text);
}

TEST(Ansi, EveryByteSurvivesARoundTrip) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        EXPECT_EQ(toAnsi(fromAnsi(bytes)), bytes);
        EXPECT_EQ(ansiCode(fromAnsi(bytes)[0]), byte);
    }
    EXPECT_EQ(fromAnsi("\x80\x81\xFF"), u"\u20AC\u0081\u00FF");
}

TEST(Ansi, MissingCharactersBecomeQuestionMarks) {
    // Full-width and other slashes, braces; the Kelvin sign; an accented letter of another page; a pair.
    for (const char16_t unit : std::u16string_view(u"\uFF3C\u2216\uFF5B\uFF5D\u212A\u0101\xD83D\u0080")) {
        EXPECT_EQ(ansiCode(unit), '?') << static_cast<unsigned>(unit);
    }
    EXPECT_EQ(toAnsi(u"a\U0001F600b"), "a??b");
}

// A code page in which 81 and 82 are the first of two bytes.
class PairedAnsi : public testing::Test {
protected:
    PairedAnsi() {
        AnsiCodePage page = westernCodePage();
        page.upperHalf[1] = 0x81;
        page.upperHalf[2] = 0x82;
        page.pairs = {{0x815C, 0x2015}, {0x82A0, 0x3042}, {0x8281, 0xFF41}, {0x8140, 0xFF41}};
        useAnsiCodePage(page);
    }
    ~PairedAnsi() override { useAnsiCodePage(westernCodePage()); }
};

TEST_F(PairedAnsi, CharactersOfTwoBytesSurviveARoundTrip) {
    const std::pair<std::string_view, std::u16string_view> cases[] = {
        {"a\x82\xA0z", u"a\u3042z"},
        {"\x81\x5C\\", u"\u2015\\"},
        {"\x82\x81\x5C", u"\uFF41\\"},    // a second byte that is not a first one
        {"\x81 \x82", u"\u0081 \u0082"},  // alone, and at the end
        {"\x82\x82\xA0\xE9", u"\u0082\u3042\u00E9"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(fromAnsi(bytes), text);
        EXPECT_EQ(toAnsi(text), bytes);
    }
    EXPECT_EQ(fromAnsi("\x81\x40"), u"\uFF41");
    EXPECT_EQ(ansiCode(0x3042), 0x82A0);
    EXPECT_EQ(toAnsi(u"\u3043\uFF3C"), "??");
    // A first byte alone does not include a backslash.
    EXPECT_EQ(toAnsi(u"\u0081\\par \u0082\u3042\u0082\u0081"), "?\\par \x82\x82\xA0?\x81");
}

TEST(Utf8Ansi, IsUtf8) {
    useUtf8AsAnsi();
    EXPECT_EQ(fromAnsi("a\xE9\xE2\x82\xAC"), u"a\uFFFD\u20AC");
    EXPECT_EQ(toAnsi(u"\u20AC"), "\xE2\x82\xAC");
    useAnsiCodePage(westernCodePage());
}

}  // namespace
}  // namespace velmor
