#include "text/Encoding.h"

#include <gtest/gtest.h>

#include "Random.h"

namespace velmor {
namespace {

TEST(Utf8, EveryUnitAndRandomTextsComeBack) {
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const std::u16string text{u'a', static_cast<char16_t>(unit), u'b'};
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
        {"\xE2\x82", u"\uFFFD"},                  // cut short at the end
        {"\xE2\x82z", u"\uFFFDz"},                // and before the end
        {"\xF0\x9F\x98\x41", u"\uFFFDA"},
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond U+10FFFF
        {"\xFF\xFE", u"\uFFFD\uFFFD"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(fromUtf8(bytes), text);
}

TEST(Ansi, EveryByteComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        EXPECT_EQ(toAnsi(fromAnsi(bytes)), bytes);
        EXPECT_EQ(ansiCode(fromAnsi(bytes)[0]), byte);
    }
    EXPECT_EQ(fromAnsi("\x80\x81\xFF"), u"\u20AC\u0081\u00FF");
}

TEST(Ansi, WhatDoesNotFitIsAQuestionMarkAndNeverALookAlike) {
    // Full-width and other slashes, braces; the Kelvin sign; an accented letter of another page; a pair.
    for (const char16_t unit : std::u16string_view(u"\uFF3C\u2216\uFF5B\uFF5D\u212A\u0101\xD83D\u0080")) {
        EXPECT_EQ(ansiCode(unit), '?') << static_cast<unsigned>(unit);
    }
    EXPECT_EQ(toAnsi(u"a\U0001F600b"), "a??b");
}

}  // namespace
}  // namespace velmor
