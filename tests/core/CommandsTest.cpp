// The built-in commands, as a template sees them.

#include <gtest/gtest.h>

#include "core/BuiltInCommands.h"
#include "core/TestTags.h"
#include "core/Version.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

using automation::Variant;
using test::TagTest;

struct TextCase {
    const char16_t* text;
    const char16_t* expected;
};

void expectAll(TagTest& on, std::initializer_list<TextCase> cases) {
    for (const TextCase& one : cases) {
        on.properties->RemoveAll();
        EXPECT_EQ(on.evaluate(one.text), one.expected)
            << std::string(one.text, one.text + std::u16string(one.text).size());
    }
}

TEST(Commands, AnswerAsDescribed) {
    TagTest on;
    expectAll(on, {
                      {u"<KV:TAG>@DESCRIPTION:</KV>", u"Pellmar Quillmarc"},
                      {u"<KV:TAG>@VERSION:</KV>", u"1"},
                      {u"<kv:tag>@version:</kv>", u"1"},
                      {u"<KV:TAG>TRKEEPNEXT:</KV>", u"{\\rtf1\\trkeepfollow}"},
                      {u"<KV:TAG>TRKEEPFOLLOW:</KV>", u"{\\rtf1\\trkeepfollow}"},
                      {u"<KV:TAG>NOSUCH:</KV>", u""},
                      {u"<KV:TAG></KV>", u""},
                      {u"<KV:GRP-TAG>@VERSION:</KV>", u"!Incorrect Handler!"},
                      {u"<KV:TAG>SETPROPERTY:a=1:</KV><KV:TAG>PROPERTY:a=0:</KV>", u"1"},
                      {u"<KV:TAG>SETPROPERTY:a=1:</KV><KV:TAG>SETPROPERTY:A=2:</KV><KV:TAG>PROPERTY:a=0:</KV>", u"2"},
                      {u"<KV:TAG>SETPROPERTY:</KV>", u""},
                      {u"<KV:TAG>PRIVVAR:a=none:</KV>", u"none"},
                      {u"<KV:TAG>PRIVVAR:</KV>", u""},
                      {u"<KV:TAG>PRIVSTRCATDUMP:a=none:</KV>", u"none"},
                  });
    EXPECT_EQ(on.properties->Count(), 0);
}

TEST(Commands, VersionFollowsTheProject) {
    TagTest on;
    const std::string shown = VELMOR_VERSION_TEXT;
    EXPECT_EQ(on.evaluate(u"<KV:TAG>@DLL VERSION:</KV>"), std::u16string(shown.begin(), shown.end()));
    EXPECT_EQ(shown.size(), std::to_string(VELMOR_VERSION_MAJOR).size() + 8) << shown;
}

// Default values of PROPERTY: typed as every unquoted value is, quoted ones as they stand.
TEST(Commands, PropertyGivesTheValueOrTheDefault) {
    TagTest on;
    expectAll(on, {
                      {u"<KV:TAG>PROPERTY:b=zz:</KV>", u"zz"},
                      {u"<KV:TAG>PROPERTY:b=zz</KV>", u"zz"},
                      {u"<KV:TAG>PROPERTY:b=:</KV>", u""},
                      {u"<KV:TAG>PROPERTY:b:</KV>", u"0"},
                      {u"<KV:TAG>PROPERTY:</KV>", u""},
                      {u"<KV:TAG>PROPERTY</KV>", u""},
                      {u"<KV:TAG>PROPERTY:b=007:</KV>", u"7"},
                      {u"<KV:TAG>PROPERTY:b=\"007\":</KV>", u"007"},
                      {u"<KV:TAG>PROPERTY:b=1.50:</KV>", u"1.5"},
                      {u"<KV:TAG>PROPERTY:b=0:</KV>", u"0"},
                      {u"<KV:TAG>PROPERTY:b=2147483647:</KV>", u"2147483647"},
                      {u"<KV:TAG>PROPERTY:b=5&:</KV>", u"5"},
                      {u"<KV:TAG>PROPERTY:b=True:</KV>", u"True"},
                      {u"<KV:TAG>PROPERTY:b=NUL:</KV>", u""},
                      {u"<KV:TAG>PROPERTY:b=x y:c=z:</KV>", u"x y"},
                      {u"<KV:TAG>PROPERTY:b=C:\\x:</KV>", u"C:\\x"},
                      {u"<KV:TAG>PROPERTY:b=\"a:b\":</KV>", u"a:b"},
                      {u"<KV:TAG>PROPERTY:b=<KV:TAG>@VERSION:</KV>:</KV>", u"1"},
                  });
    on.set(u"name", u"Ada");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:NAME=none:</KV>"), u"Ada");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:!x!name=none:</KV>"), u"Ada");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY: name=none:</KV>"), u"Ada");
}

// The short cut for PROPERTY against the full parse, on names made of what could differ.
TEST(Commands, TheShortCutGivesWhatTheFullParseGives) {
    TagTest on;
    auto context = std::make_shared<TagContext>();
    context->properties = Collection(on.properties);
    context->errorLog = std::make_shared<privProperties>(on.services);
    context->privateVariables = std::make_shared<privProperties>(on.services);
    on.set(u"a", u"text");
    on.properties->AddDbl(u"b", 2.5);
    const ContextRef shared = context;
    const char16_t* const pieces[] = {u"a", u"b", u"=", u":",    u"0",    u"7", u"True", u"\"", u"\\",
                                      u"/", u" ", u"!", u"!@",   u"NUL:", u"&", u"#",    u"%",  u"~AT\"-",
                                      u".", u"-", u"e", u"C:\\", u"$",    u"<", u"x",    u"&H", u"99999999"};
    int taken = 0;
    std::uint32_t random = 12345;
    for (int turn = 0; turn < 60000; ++turn) {
        std::u16string name = u"TAG>PROPERTY:";
        for (unsigned count = 1 + turn % 6; count > 0; --count) {
            random = random * 1664525 + 1013904223;
            name += pieces[(random >> 16) % std::size(pieces)];
        }
        std::u16string quick;
        if (!BuiltInCommands::appendProperty(name, *context, quick)) continue;
        ++taken;
        if (!name.ends_with(u':')) name += u':';
        ASSERT_EQ(quick, BuiltInCommands(on.services, shared).run(name)) << std::string(name.begin(), name.end());
    }
    EXPECT_GT(taken, 5000);
}

TEST(Commands, SetPropertyEvaluatesUnlessTold) {
    TagTest on;
    on.set(u"n", u"1");
    const std::u16string setting = u"<KV:TAG>SETPROPERTY:v=<KV:TAG>PROPERTY:n=:</KV>";
    EXPECT_EQ(on.evaluate(setting + u":</KV>"), u"");
    EXPECT_EQ(on.properties->GetValueStr(u"v"), u"1");
    EXPECT_EQ(on.evaluate(setting + u":PREPROCESS=false:</KV>"), u"");
    EXPECT_EQ(on.properties->GetValueStr(u"v"), u"<KV:TAG>PROPERTY:n=:</KV>");
    on.set(u"n", u"2");
    EXPECT_EQ(on.last->GetProcessedPropertiesValue(u"v"), u"2");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>SETPROPERTY:n=5:</KV>"), u"");
    EXPECT_EQ(on.properties->Item(std::u16string_view(u"n"))->ValueType(), 3);  // a long, as typed
}

TEST(Commands, IncludeReadsFiles) {
    TagTest on;
    on.services.files.set(u"C:\\x\\y.txt", "there");
    on.services.files.set(u"C:\\Program Files\\Velmor\\y.txt", "default");
    on.services.files.set(u"\\\\srv\\y.txt", "unc");
    on.services.files.set(u"C:\\x\\tag.txt", "<KV:TAG>@VERSION:</KV>");
    on.services.files.set(u"C:\\x\\locked.txt", "");
    on.services.files.failReading(u"C:\\x\\locked.txt");
    expectAll(
        on, {
                {u"<KV:TAG>INCLUDE=C:\\x\\y.txt:</KV>", u"there"},
                {u"<KV:TAG>INCLUDE=\\\\srv\\y.txt:</KV>", u"unc"},
                {u"<KV:TAG>INCLUDE=y.txt:</KV>", u"default"},
                {u"<KV:TAG>INCLUDE=none.txt:</KV>", u""},
                {u"<KV:TAG>INCLUDE:</KV>", u""},
                {u"<KV:TAG>SETPATH=C:\\x:</KV>|<KV:TAG>INCLUDE=y.txt:</KV>", u"C:\\x|there"},
                {u"<KV:TAG>SETPATH=C:\\x\\:</KV>|<KV:TAG>INCLUDE=y.txt:</KV>", u"C:\\x\\|there"},
                {u"<KV:TAG>INCLUDE=C:\\x\\tag.txt:</KV>", u"1"},
                {u"<KV:TAG>SETPROPERTY:f=y:</KV><KV:TAG>INCLUDE=C:\\x\\<KV:TAG>PROPERTY:f=:</KV>.txt:</KV>", u"there"},
            });
    EXPECT_EQ(on.evaluate(u"<KV:TAG>INCLUDE=C:\\x\\locked.txt:</KV>"), u"");
    EXPECT_EQ(on.errors(), (std::vector<std::u16string>{u"TAG: The file could not be read"}));
    on.services.folders.separatorUnit = u'/';
    on.services.files.set(u"/srv/y.txt", "rooted");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>INCLUDE=/srv/y.txt:</KV>"), u"rooted");
}

TEST(Commands, ListFilesGiveOneEntry) {
    TagTest on;
    on.services.files.set(u"C:\\l.kvl", "red=\"Rot\":green=\"Gr<KV:TAG>@VERSION:</KV>n\":blue=5:");
    on.services.files.set(u"C:\\e.KVL", "");
    expectAll(on, {
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:</KV>", u"Rot"},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:INDEX=3:</KV>", u"5"},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:INDEX=<KV:TAG>@VERSION:</KV>:</KV>", u"Rot"},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:INDEX=4:</KV>", u""},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:INDEX=x:</KV>", u""},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:KEY=GREEN:</KV>", u"Gr1n"},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:KEY=none:</KV>", u""},
                      {u"<KV:TAG>INCLUDE=C:\\l.kvl:KEY=blue:INDEX=1:</KV>", u"Rot"},
                      {u"<KV:TAG>INCLUDE=C:\\e.KVL:</KV>", u""},
                  });
}

TEST(Commands, PrivateVariablesAreReadAndDumped) {
    TagTest on;
    on.last = std::make_shared<kvTag>(on.services);
    const auto builder = std::make_shared<privStrCat>();
    builder->Append(u"built");
    on.last->privateVariables()->AddStrCatInternal(u"RTF1", builder);
    on.last->Value(u"<KV:TAG>PRIVVAR:rtf1:</KV>|<KV:TAG>PRIVSTRCATDUMP:rtf1:</KV>|<KV:TAG>PRIVVAR:RTF1:</KV>");
    EXPECT_EQ(on.last->Result(), u"built|built|");
}

}  // namespace
}  // namespace velmor
