// The built-in commands, as a template sees them.

#include <gtest/gtest.h>

#include "Random.h"
#include "core/BuiltInCommands.h"
#include "core/TestTags.h"
#include "core/Version.h"
#include "text/privStrCat.h"

namespace velmor {
namespace {

using test::tagged;
using test::TagTest;

// Templates and their results, each with its own properties. "[" and "]" are replaced by "<KV:TAG>" and "</KV>".
void check(TagTest& on, std::initializer_list<std::pair<const char16_t*, const char16_t*>> cases) {
    for (const auto& [text, expected] : cases) {
        on.properties->RemoveAll();
        EXPECT_EQ(on.evaluate(text), expected) << toUtf8(text);
    }
}

// clang-format off
TEST(Commands, AnswerAsDescribed) {
    TagTest on;
    const std::string version = VELMOR_VERSION_TEXT;
    const std::u16string shown(version.begin(), version.end());
    EXPECT_EQ(version.size(), std::to_string(VELMOR_VERSION_MAJOR).size() + 8) << version;
    check(on, {
        {u"[@DESCRIPTION:]", u"Pellmar Quillmarc"}, {u"[@VERSION:]", u"1"}, {u"<kv:tag>@version:</kv>", u"1"},
        {u"[@DLL VERSION:]", shown.c_str()}, {u"[TRKEEPNEXT:]", u"{\\rtf1\\trkeepfollow}"},
        {u"[TRKEEPFOLLOW:]", u"{\\rtf1\\trkeepfollow}"}, {u"[NOSUCH:]", u""}, {u"[]", u""},
        {u"<KV:GRP-TAG>@VERSION:</KV>", u"!Incorrect Handler!"}, {u"[SETPROPERTY:a=1:][PROPERTY:a=0:]", u"1"},
        {u"[SETPROPERTY:a=1:][SETPROPERTY:A=2:][PROPERTY:a=0:]", u"2"}, {u"[SETPROPERTY:]", u""},
        {u"[PRIVVAR:a=none:]", u"none"}, {u"[PRIVVAR:]", u""}, {u"[PRIVSTRCATDUMP:a=none:]", u"none"},
        // Unquoted default values have a type; quoted ones stay as they are.
        {u"[PROPERTY:b=zz:]", u"zz"}, {u"[PROPERTY:b=zz]", u"zz"}, {u"[PROPERTY:b=:]", u""}, {u"[PROPERTY:b:]", u"0"},
        {u"[PROPERTY:]", u""}, {u"[PROPERTY]", u""}, {u"[PROPERTY:b=007:]", u"7"}, {u"[PROPERTY:b=\"007\":]", u"007"},
        {u"[PROPERTY:b=1.50:]", u"1.5"}, {u"[PROPERTY:b=2147483647:]", u"2147483647"}, {u"[PROPERTY:b=5&:]", u"5"},
        {u"[PROPERTY:b=True:]", u"True"}, {u"[PROPERTY:b=NUL:]", u""}, {u"[PROPERTY:b=x y:c=z:]", u"x y"},
        {u"[PROPERTY:b=C:\\x:]", u"C:\\x"}, {u"[PROPERTY:b=\"a:b\":]", u"a:b"}, {u"[PROPERTY:b=[@VERSION:]:]", u"1"}});
    for (const auto* name : {u"NAME", u"!x!name", u" name"}) {
        on.set(u"name", u"Ada");
        EXPECT_EQ(on.evaluate(std::u16string(u"[PROPERTY:") + name + u"=none:]"), u"Ada");
    }
}

// The short cut for PROPERTY and the full parse, on names that may show a difference.
TEST(Commands, TheShortCutEqualsTheFullParse) {
    TagTest on;
    auto context = std::make_shared<TagContext>();
    context->properties = Collection(on.properties);
    context->errorLog = context->privateVariables = std::make_shared<privProperties>(on.services);
    on.set(u"a", u"text");
    on.properties->AddDbl(u"b", 2.5);
    const char16_t* const pieces[] = {
        u"a", u"b", u"=", u":", u"0", u"7", u"True", u"\"", u"\\", u"/", u" ", u"!", u"!@", u"NUL:", u"&", u"#", u"%",
        u"~AT\"-", u".", u"-", u"e", u"C:\\", u"$", u"<", u"x", u"&H", u"99999999",
        u"<kv:", u"</KV>", u"=<KV:", u"<KV:x:</KV>"};
    Random random;
    int taken = 0;
    for (int turn = 0; turn < 60000; ++turn) {
        std::u16string name = u"TAG>PROPERTY:" + random.text(pieces, 6), text;
        const auto found = propertyText(name, *context, text);
        if (!found) continue;
        const std::u16string quick(found->text);
        ++taken;
        if (!name.ends_with(u':')) name += u':';
        ASSERT_EQ(quick, answerCommand(on.services, ContextRef(context), name).text) << toUtf8(name);
    }
    EXPECT_GT(taken, 5000);
}
// clang-format on

TEST(Commands, ReadTheElementsThatTheHostChanged) {
    TagTest on;
    for (const auto* text :
         {u"[PROPERTY:a=1:]", u"[PROPERTY:a=1][PROPERTY:a=1:]"}) {  // the second without the short cut
        const auto tag = on.make(std::u16string(text) + u"|[@AUTHOR:]");
        tag->Tags()->Item(1)->Elements()->Item(3)->ValueStr(u"2");
        tag->Tags()->Item(tag->Tags()->Count())->Name(u"TAG>@VERSION");
        EXPECT_EQ(tag->Result(), text[14] == u']' ? u"2|1" : u"12|1");
    }
}

TEST(Commands, SetPropertyEvaluatesUnlessPreprocessIsFalse) {
    TagTest on;
    on.set(u"n", u"1");
    EXPECT_EQ(on.evaluate(u"[SETPROPERTY:v=[PROPERTY:n=:]:]"), u"");
    EXPECT_EQ(on.properties->GetValueStr(u"v"), u"1");
    EXPECT_EQ(on.evaluate(u"[SETPROPERTY:v=[PROPERTY:n=:]:PREPROCESS=false:]"), u"");
    EXPECT_EQ(on.properties->GetValueStr(u"v"), u"<KV:TAG>PROPERTY:n=:</KV>");
    on.set(u"n", u"2");
    EXPECT_EQ(on.last->GetProcessedPropertiesValue(u"v"), u"2");
    on.evaluate(u"[SETPROPERTY:n=5:]");
    EXPECT_EQ(on.properties->Item(std::u16string_view(u"n"))->ValueType(), 3);  // a long, as typed
}

// clang-format off
TEST(Commands, IncludeReadsFilesAndEntriesOfLists) {
    TagTest on;
    const std::pair<const char16_t*, std::string_view> files[] = {
        {u"C:\\x\\y.txt", "there"}, {u"C:\\Program Files\\Velmor\\y.txt", "default"}, {u"\\\\srv\\y.txt", "unc"},
        {u"C:\\x\\tag.txt", "<KV:TAG>@VERSION:</KV>"}, {u"/srv/y.txt", "rooted"}, {u"C:\\x\\locked.txt", ""},
        {u"C:\\nul.rtf", {"{\\rtf1 a}\r\n\0", 12}}, {u"C:\\more.rtf", "{\\rtf1 a\\}}b{c}"},
        {u"C:\\old.rtf", "{\\rtf\\ansi a}b"}, {u"C:\\open.rtf", "{\\rtf1 {a}"},
        {u"C:\\l.kvl", "red=\"Rot\":green=\"Gr<KV:TAG>@VERSION:</KV>n\":blue=5:p=C:\\q.txt:t=<KV:TAG>@VERSION:</KV>:"},
        {u"C:\\e.KVL", ""}};
    for (const auto& [path, bytes] : files) on.services.files.set(path, bytes);
    on.services.files.failReading(u"C:\\x\\locked.txt");
    check(on, {
        {u"[INCLUDE=C:\\x\\y.txt:]", u"there"}, {u"[INCLUDE=\\\\srv\\y.txt:]", u"unc"}, {u"[INCLUDE=y.txt:]", u"default"},
        {u"[INCLUDE=none.txt:]", u""}, {u"[INCLUDE:]", u""}, {u"[SETPATH=C:\\x:]|[INCLUDE=y.txt:]", u"C:\\x|there"},
        {u"[SETPATH=C:\\x\\:]|[INCLUDE=y.txt:]", u"C:\\x\\|there"}, {u"[INCLUDE=C:\\x\\tag.txt:]", u"1"},
        {u"[SETPROPERTY:f=y:][INCLUDE=C:\\x\\[PROPERTY:f=:].txt:]", u"there"}, {u"[INCLUDE=C:\\l.kvl:]", u"Rot"},
        {u"[INCLUDE=C:\\l.kvl:INDEX=3:]", u"5"}, {u"[INCLUDE=C:\\l.kvl:INDEX=[@VERSION:]:]", u"Rot"},
        {u"[INCLUDE=C:\\l.kvl:INDEX=6:]", u""}, {u"[INCLUDE=C:\\l.kvl:INDEX=x:]", u""},
        {u"[INCLUDE=C:\\l.kvl:KEY=GREEN:]", u"Gr1n"}, {u"[INCLUDE=C:\\l.kvl:KEY=none:]", u""},
        {u"[INCLUDE=C:\\l.kvl:KEY=p:]", u"C:\\q.txt"}, {u"[INCLUDE=C:\\l.kvl:KEY=t:]", u"1"},
        {u"[INCLUDE=C:\\l.kvl:KEY=blue:INDEX=1:]", u"Rot"}, {u"[INCLUDE=C:\\e.KVL:]", u""},
        {u"[INCLUDE=C:\\nul.rtf:]", u"{\\rtf1 a}"}, {u"[INCLUDE=C:\\open.rtf:]", u"{\\rtf1 {a}"},
        {u"[INCLUDE=C:\\old.rtf:]", u"{\\rtf\\ansi a}b"}, {u"[INCLUDE=C:\\x\\locked.txt:]", u""}});
    EXPECT_EQ(on.errors(), (std::vector<std::u16string>{u"TAG: The file could not be read"}));
    EXPECT_EQ(on.last->ErrorLog()->Item(1)->Properties()->GetValueStr(u"TagData"), u"TAG>INCLUDE=C:\\x\\locked.txt:");
    EXPECT_EQ(on.last->ErrorLog()->Item(1)->Properties()->GetValueStr(u"ErrData"), u"C:\\x\\locked.txt");
    check(on, {{u"[INCLUDE=C:\\more.rtf:]", u"{\\rtf1 a\\}}"}});
    EXPECT_EQ(on.errors(), (std::vector<std::u16string>{u"TAG: Text after the end of the document was left out"}));
    check(on, {{u"[SETPROPERTY:kvTag.RTF Tolerant=yes:][INCLUDE=C:\\old.rtf:]", u"{\\rtf1\\ansi a}"}});
    on.services.folders.separatorUnit = u'/';
    check(on, {{u"[INCLUDE=/srv/y.txt:]", u"rooted"}});
}
// clang-format on

TEST(Commands, PrivateVariablesAreReadAndDumped) {
    TagTest on;
    on.last = std::make_shared<kvTag>(on.services);
    on.last->privateVariables()->GetProperty(u"RTF1")->StrCatValue()->Append(u"built");
    on.last->Value(tagged(u"[PRIVVAR:rtf1:]|[PRIVSTRCATDUMP:rtf1:]|[PRIVVAR:RTF1:]"));
    EXPECT_EQ(on.last->Result(), u"built|built|");
}

}  // namespace
}  // namespace velmor
