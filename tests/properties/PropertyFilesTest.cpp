#include <gtest/gtest.h>

#include "common/Cipher.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

constexpr char16_t file[] = u"C:\\sample.kvp";

class PropertyFiles : public PropertyTest {
protected:
    std::string bytes() { return services.files.get(file).value_or("(no file)"); }
    void put(std::string_view content) { services.files.set(file, content); }
};

TEST_F(PropertyFiles, HoldTheTextForm) {
    collection->AddStr(u"Name", u"caf\u00e9 \u20ac");
    collection->AddStr(u"Quote", u"\":");
    EXPECT_TRUE(collection->SaveFile(file));
    EXPECT_EQ(bytes(), "Name=\"caf\xe9 \x80\":Quote=~CE\"\xb5\xb5:\":");
    EXPECT_TRUE(collection->SaveToFile(file));
    EXPECT_EQ(bytes(), "Name=\"caf\xe9 \x80\":Quote=~64\"Ijo=\":");
    put("a=1&:\xef=2&:");
    EXPECT_TRUE(collection->LoadFromFile(file));  // replaces the collection's entries
    EXPECT_EQ(describe(*collection), toUtf8(u"a=Long 1 | \u00ef=Long 2"));
    collection->RemoveAll();
    EXPECT_TRUE(collection->SaveFile(file));
    EXPECT_EQ(bytes(), "");
    collection->AddLng(u"old", 1);
    EXPECT_TRUE(collection->LoadFromFile(file));
    EXPECT_EQ(collection->Count(), 0);
}

TEST_F(PropertyFiles, LoseNoCharacter) {
    const std::u16string texts[] = {
        u"a=\"\u0141\U0001f600\":", u"\u4e00=1&:",       u"a=1&:a=~AT\"-\u0141=2&:\":",
        u"\u00ef\u00bb\u00bf=1&:",  u"\u00ff\u00fe=1&:", u"a=\"\xd800\":",
    };
    for (const auto& text : texts) {
        collection->Build(text);
        ASSERT_EQ(collection->Stored(), text);
        EXPECT_TRUE(collection->SaveFile(file));
        const PropertiesRef loaded = newProperties(services);
        EXPECT_TRUE(loaded->LoadFromFile(file));
        EXPECT_EQ(toUtf8(loaded->Stored()), toUtf8(text));
    }
}

TEST_F(PropertyFiles, ThatCannotBeReadOrWrittenChangeNothing) {
    collection->AddLng(u"kept", 1);
    EXPECT_FALSE(collection->LoadFromFile(file));
    EXPECT_FALSE(collection->LoadFromFile(u""));
    put("old=1&:");
    services.files.failReading(file);
    EXPECT_FALSE(collection->LoadFromFile(file));
    EXPECT_FALSE(collection->LoadFromFile(file, u"pass"));
    EXPECT_EQ(describe(*collection), "kept=Long 1");
    services.files.failWriting(file);
    EXPECT_FALSE(collection->SaveFile(file));
    EXPECT_FALSE(collection->SaveToFile(file));
    EXPECT_EQ(bytes(), "old=1&:");
}

TEST_F(PropertyFiles, OpenWithTheirPasswordAlone) {
    collection->AddStr(u"Name", u"Ruth \u0141\xd800");
    const std::string saved = describe(*collection);
    ASSERT_TRUE(collection->SaveFile(file, u"pass"));
    const std::string whole = bytes();
    EXPECT_TRUE(isEnciphered(fromAnsi(whole)));
    const struct {
        std::string content;
        const char16_t* password;
        std::string loaded;
    } cases[] = {
        {whole, u"pass", saved},         {whole, u"word", ""}, {whole.substr(0, whole.size() / 8 * 4 + 2), u"pass", ""},
        {"Name=\"Ruth\":", u"pass", ""}, {"", u"pass", ""},
    };
    for (const auto& row : cases) {
        put(row.content);
        collection->AddLng(u"old", 1);
        EXPECT_TRUE(collection->LoadFromFile(file, row.password));
        EXPECT_EQ(describe(*collection), row.loaded);
    }
    put(whole);
    EXPECT_TRUE(collection->LoadFromFile(file));  // without a password it is text like any other
    EXPECT_EQ(bytes(), whole);
}

// Every later version on both systems reads files that each system once wrote.
TEST_F(PropertyFiles, OfBothSystemsAreRead) {
    for (const char* const enciphered :
         {"VelmorCipher1:no9OBTrju+In9V8dzTYvRCFu32/N1DbCRkueK8TmcEsalOaQLJ5A0tyAwFy5KuBL/uYiE58xfYjTK4I9cVdApA==",
          "VelmorCipher1:DFKvItvKqT0tkNF45lj0UEqGg5B46Jemflj4aNWs0UX0pSt8NfpfWiv1VJkwBfwDWFMe8Fpnx4lIgESun/ugOQ=="}) {
        put(enciphered);
        EXPECT_TRUE(collection->LoadFromFile(file, u"pass \u00e9\u4e00"));
        EXPECT_EQ(describe(*collection), toUtf8(u"Name=String Ruth \u0141 | n=Long 5"));
    }
}

}  // namespace
}  // namespace velmor
