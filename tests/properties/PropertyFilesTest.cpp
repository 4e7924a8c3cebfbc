#include <gtest/gtest.h>

#include <iterator>
#include <map>

#include "common/Base64.h"
#include "common/Cipher.h"
#include "platform/BytePicture.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

constexpr char16_t kFile[] = u"C:\\sample.kvp";

class PropertyFiles : public PropertyTest {
protected:
    std::string bytes() { return services.files.get(kFile).value_or("(no file)"); }
    void put(std::string_view content) { services.files.set(kFile, content); }
};

TEST_F(PropertyFiles, HoldTheTextForm) {
    collection->AddStr(u"Name", u"caf\u00e9 \u20ac");
    collection->AddStr(u"Quote", u"\":");
    EXPECT_TRUE(collection->SaveFile(kFile));
    EXPECT_EQ(bytes(), "Name=\"caf\xe9 \x80\":Quote=~CE\"\xb5\xb5:\":");
    EXPECT_TRUE(collection->SaveToFile(kFile));
    EXPECT_EQ(bytes(), "Name=\"caf\xe9 \x80\":Quote=~64\"Ijo=\":");
    put("a=1&:\xef=2&:");
    EXPECT_TRUE(collection->LoadFromFile(kFile));  // replaces the collection's entries
    EXPECT_EQ(describe(*collection), toUtf8(u"a=Long 1 | \u00ef=Long 2"));
    collection->RemoveAll();
    EXPECT_TRUE(collection->SaveFile(kFile));
    EXPECT_EQ(bytes(), "");
    collection->AddLng(u"old", 1);
    EXPECT_TRUE(collection->LoadFromFile(kFile));
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
        EXPECT_TRUE(collection->SaveFile(kFile));
        const PropertiesRef loaded = newProperties(services);
        EXPECT_TRUE(loaded->LoadFromFile(kFile));
        EXPECT_EQ(toUtf8(loaded->Stored()), toUtf8(text));
    }
}

TEST_F(PropertyFiles, ThatCannotBeReadOrWrittenChangeNothing) {
    collection->AddLng(u"kept", 1);
    EXPECT_FALSE(collection->LoadFromFile(kFile));
    EXPECT_FALSE(collection->LoadFromFile(u""));
    put("old=1&:");
    services.files.failReading(kFile);
    EXPECT_FALSE(collection->LoadFromFile(kFile));
    EXPECT_FALSE(collection->LoadFromFile(kFile, u"pass"));
    EXPECT_EQ(describe(*collection), "kept=Long 1");
    services.files.failWriting(kFile);
    EXPECT_FALSE(collection->SaveFile(kFile));
    EXPECT_FALSE(collection->SaveToFile(kFile));
    EXPECT_EQ(bytes(), "old=1&:");
}

// A truncated file gives every complete entry.
TEST_F(PropertyFiles, GiveTheirCompleteEntriesWhenTruncated) {
    collection->AddStr(u"Text", u"say \"hi\": \u20ac")->Encoding(8);
    collection->AddDate(u"When", automation::Date{38051.5});
    collection->AddStr(u"Packed", u"packed text")->Encoding(4);
    const PropertyRef owner = collection->AddLng(u"Owner", 5);
    owner->Attributes()->AddStr(u"x", u"\":");
    owner->Properties()->AddLng(u"child", 2);
    collection->AddObject(u"Nested", newProperties(services));
    const std::string whole = toAnsi(collection->Stored());
    std::map<std::size_t, std::string> complete;  // by the end of the last entry
    for (; collection->Count() > 0; collection->Remove(collection->Count())) {
        complete[collection->Stored().size()] = describe(*collection);
    }
    complete[0] = "";
    for (std::size_t cut = 0; cut <= whole.size(); ++cut) {
        put(whole.substr(0, cut));
        ASSERT_TRUE(collection->LoadFromFile(kFile)) << cut;
        const std::string& expected = std::prev(complete.upper_bound(cut))->second;
        EXPECT_EQ(describe(*collection).substr(0, expected.size()), expected) << cut;
    }
}

TEST_F(PropertyFiles, OpenWithTheirPasswordOnly) {
    collection->AddStr(u"Name", u"Ruth \u0141\xd800");
    const std::string saved = describe(*collection);
    ASSERT_TRUE(collection->SaveFile(kFile, u"pass"));
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
        EXPECT_TRUE(collection->LoadFromFile(kFile, row.password));
        EXPECT_EQ(describe(*collection), row.loaded);
    }
    put(whole);
    EXPECT_TRUE(collection->LoadFromFile(kFile));  // without a password it is text like any other
    EXPECT_EQ(bytes(), whole);
}

TEST_F(PropertyFiles, GivePicturesByteForByte) {
    const std::string picture("GIF89a\x01\x00\x01\x00\x00\xff\x00;", 14);
    put("Logo=~RO~Picture\"" + toAnsi(base64(picture)) + "\":n=1&:");
    ASSERT_TRUE(collection->LoadFromFile(kFile));
    EXPECT_EQ(describe(*collection), "Logo=Picture | n=Long 1");
    const std::string* const kept = platform::pictureBytes(collection->Item(u"Logo")->Value().object());
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(*kept, picture);
    EXPECT_EQ(services.files.paths(), std::vector<std::u16string>{kFile});
    EXPECT_TRUE(collection->SaveFile(kFile));  // the text form keeps a picture's name only
    EXPECT_EQ(bytes(), "Logo=n=1&:");
}

TEST_F(PropertyFiles, AreServedByName) {
    const auto call = [&](std::u16string_view name, std::vector<automation::Variant> arguments) {
        return collection->invoke(name, automation::InvokeKind::method, arguments);
    };
    collection->AddLng(u"a", 1);
    EXPECT_TRUE(call(u"SaveFile", {kFile}).identical(true));
    EXPECT_TRUE(call(u"SaveToFile", {kFile, u""}).identical(true));
    EXPECT_TRUE(call(u"LoadFromFile", {u"C:\\none"}).identical(false));
    EXPECT_TRUE(call(u"LoadFromFile", {kFile, automation::Variant::missing()}).identical(true));
    call(u"BuildByContainsQuery", {u"b"});
    EXPECT_TRUE(call(u"ContainsQuery", {}).identical(u"a OR b"));
}

}  // namespace
}  // namespace velmor
