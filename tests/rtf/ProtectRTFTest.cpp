#include "Seed.h"
#include "rtf/edit/ProtectRTF.h"

#include <gtest/gtest.h>

#include <random>

#include "LiteralProtectRTF.h"

namespace velmor {
namespace {

std::u16string protectedText(std::u16string text) {
    ProtectRTFCode(text);
    return text;
}

const std::pair<std::u16string, std::u16string> cases[] = {
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
    {u" {\\rtf1}", u" \\{\\\\rtf1\\}"},
};

TEST(ProtectRTF, EscapesPlainTextAndLeavesDocuments) {
    for (const auto& [text, expected] : cases) EXPECT_EQ(protectedText(text), expected);
}

TEST(ProtectRTF, EqualsTheFourReplacements) {
    constexpr std::u16string_view symbols = u"\\{}\r\nrtf1 a\u00E4";
    const auto seed = testSeed();
    std::mt19937 random(seed);
    for (int i = 0; i < 20000; ++i) {
        std::u16string text(random() % 8 == 0 ? u"{\\rtf1" : u"");
        for (std::size_t n = random() % 24; n > 0; --n) text += symbols[random() % symbols.size()];
        ASSERT_EQ(protectedText(text), test::literallyProtected(text)) << "seed " << seed << ", text " << i;
    }
}

}  // namespace
}  // namespace velmor
