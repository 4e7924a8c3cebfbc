#include <gtest/gtest.h>

#include "common/TemporaryFile.h"
#include "common/TextFile.h"
#include "platform/MemoryServices.h"

namespace velmor {
namespace {

TEST(TextFile, IsSingleByteTextUnlessItIsMarked) {
    const std::pair<std::string, std::u16string> cases[] = {
        {"\x80\x81\xff", u"\u20ac\u0081\u00ff"},
        {std::string("\xff\xfe\xac\x20\x00\xd8", 6), u"\u20ac\xd800"},
        {"\xfe\xff\x20\xac!", u"\u20ac"},
        {"\xe2\x82\xac", u"\u00e2\u201a\u00ac"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(decodeTextFile(bytes), text);
}

TEST(TextFile, LosesNoCharacter) {
    const std::pair<std::u16string, std::string> cases[] = {
        {u"", ""},
        {u"a=\"caf\u00e9 \u20ac\u0081\":", "a=\"caf\xe9 \x80\x81\":"},
        {u"=\u0141", "\xef\xbb\xbf=\xc5\x81"},
        {u"a=?", "a=?"},
        {u"\ufeff", "\xef\xbb\xbf\xef\xbb\xbf"},
        {u"\u00ef\u00bb\u00bf", "\xef\xbb\xbf\xc3\xaf\xc2\xbb\xc2\xbf"},  // begins like a mark
        {u"\u00ff\u00fe", "\xef\xbb\xbf\xc3\xbf\xc3\xbe"},
        {u"\xd800", "\xef\xbb\xbf\xed\xa0\x80"},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(encodeTextFile(text), bytes);
        EXPECT_EQ(decodeTextFile(bytes), text);
    }
}

TEST(TextFile, AppendsToAnAbsentFileOnlyIfItMayCreate) {
    platform::MemoryServices services;
    EXPECT_FALSE(appendTextFile(services.files, u"C:\\log", u"a", false));
    EXPECT_TRUE(appendTextFile(services.files, u"C:\\log", u"\u20ac\u4e00", true));
    EXPECT_TRUE(appendTextFile(services.files, u"C:\\log", u"b", false));
    EXPECT_EQ(services.files.get(u"C:\\log"), "\x80?b");
    services.files.failReading(u"C:\\log");
    EXPECT_EQ(readTextFile(services.files, u"C:\\log"), std::nullopt);
}

TEST(TemporaryFile, HasANewNameAndIsRemovedAgain) {
    platform::MemoryServices services;
    const char16_t* const taken = u"C:\\Temp\\~kvp00000001000040008000000000000000.tmp";
    services.files.set(taken, "somebody else's");
    {
        const TemporaryFile file(services, u"~kvp", u".tmp");
        ASSERT_TRUE(file);
        EXPECT_EQ(file.path(), u"C:\\Temp\\~kvp00000002000040008000000000000000.tmp");
        EXPECT_EQ(services.files.get(file.path()), "");
    }
    EXPECT_EQ(services.files.paths().size(), 1U);
    EXPECT_EQ(services.files.get(taken), "somebody else's");
    services.files.diskFull = true;
    EXPECT_FALSE(TemporaryFile(services, u"~kvp", u".tmp"));
}

}  // namespace
}  // namespace velmor
