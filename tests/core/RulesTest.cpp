// What a host asks of an evaluation by properties ("kvTag.Missing" and others), and attempts to get around it.

#include <gtest/gtest.h>

#include "core/TestTags.h"

namespace velmor::test {
namespace {

struct Case {
    std::u16string_view text, result;
    std::size_t entries;
};

void check(TagTest& on, std::initializer_list<Case> cases) {
    for (const Case& each : cases) {
        EXPECT_EQ(on.evaluate(each.text), tagged(each.result)) << toUtf8(each.text);
        EXPECT_EQ(on.errors().size(), each.entries) << toUtf8(each.text);
    }
}

TEST(Rules, MissingValuesAreKeptMarkedOrFail) {
    TagTest on;
    on.set(u"here", u"x");
    on.set(u"empty", u"");
    on.services.files.set(u"C:\\list.kvl", "a=1:");
    on.set(u"kvTag.Missing", u"keep");
    check(on,
          {{u"<[PROPERTY:here=:][PROPERTY:empty=:][PROPERTY:none=d:]>", u"<xd>", 0},
           {u"<[PROPERTY:none=:]|[PROPERTY:none:]|[property:None=]>",
            u"<[PROPERTY:none=:]|[PROPERTY:none:]|[property:None=]>", 3},
           {u"[INCLUDE=no.txt:][INCLUDE=C:\\list.kvl:KEY=b:]", u"[INCLUDE=no.txt:][INCLUDE=C:\\list.kvl:KEY=b:]", 2},
           {u"<KV:NOPE>a:</KV>", u"<KV:NOPE>a:</KV>", 1},
           // A kept tag is not found again in place of a later one of the same text.
           {u"[PROPERTY:v=:][SETPROPERTY:v=1:][PROPERTY:v=:]", u"[PROPERTY:v=:]1", 1}});
    on.set(u"kvTag.Missing", u"Mark");
    EXPECT_EQ(on.evaluate(u"<[PROPERTY:None=:]|[INCLUDE=no.txt:]|<KV:NOPE>a:</KV>>"), u"<[None?]|[no.txt?]|[NOPE?]>");
    on.set(u"kvTag.Missing", u"fail");
    check(on, {{u"before [PROPERTY:none=:] after [PROPERTY:here=:]", u"", 1}});
    EXPECT_TRUE(on.last->hasFailed());
    on.set(u"kvTag.Missing", u"fali");
    check(on, {{u"before [PROPERTY:here=:]", u"", 1}});
    EXPECT_TRUE(on.last->hasFailed());
    on.set(u"kvTag.Missing", u"empty");
    check(on, {{u"[PROPERTY:none=:][PROPERTY:none:]", u"0", 0}});
    EXPECT_FALSE(on.last->hasFailed());
}

TEST(Rules, TagsInDataAreReportedOrText) {
    TagTest on;
    on.addHandler(u"H", 4, [](kvTag&) { return automation::Variant(tagged(u"[PROPERTY:secret=:]")); });
    on.addHandler(u"P", 4, [](kvTag& tag) {
        return automation::Variant(tag.ProcessValue(tag.CommandValueProcessed() + tagged(u"[PROPERTY:secret=:]")));
    });
    on.set(u"secret", u"s");
    on.set(u"evil", u"[PROPERTY:secret=:]");
    on.set(u"half", u"<KV:TAG>PROPERTY:");
    on.services.files.set(u"C:\\mine.txt", "<KV:TAG>PROPERTY:secret=:</KV>");
    on.set(u"kvTag.Data Tags", u"report");
    check(on, {{u"[PROPERTY:evil=:]", u"s", 1},
               {u"<KV:H>a:</KV>", u"s", 1},
               {u"[PROPERTY:none=[PROPERTY:secret=:]:]", u"s", 0},
               {u"[INCLUDE=C:\\mine.txt:]", u"s", 0}});
    on.set(u"kvTag.Data Tags", u"refuse");
    check(on, {{u"<[PROPERTY:evil=:]>", u"<[PROPERTY:secret=:]>", 1},
               {u"<KV:H>a:</KV>", u"[PROPERTY:secret=:]", 1},
               {u"<KV:P>A=[PROPERTY:secret=:]:</KV>", u"s[PROPERTY:secret=:]", 2},
               {u"[INCLUDE=C:\\mine.txt:]", u"s", 0},
               {u"[PROPERTY:none=[PROPERTY:secret=:]:]", u"s", 0},
               // Not taken for a tag of the template, nor put together with the text around it.
               {u"[PROPERTY:evil=:]|[PROPERTY:secret=:]", u"[PROPERTY:secret=:]|s", 1},
               {u"[PROPERTY:half=:]secret=:</KV>[PROPERTY:secret=:]", u"[PROPERTY:secret=:</KV>s", 0},
               // By way of another property, of the rule itself, and of a value that is evaluated while it is set.
               {u"[SETPROPERTY:t=[PROPERTY:evil=:]:][PROPERTY:t=:]", u"[PROPERTY:secret=:]", 2},
               {u"[SETPROPERTY:kvTag.Data Tags=allow:][PROPERTY:evil=:]", u"[PROPERTY:secret=:]", 2},
               {u"[SETPROPERTY:t=[PROPERTY:secret=:]:PREPROCESS=false:][PROPERTY:t=:]", u"[PROPERTY:secret=:]", 1}});
    EXPECT_EQ(on.properties->GetValueStr(u"t"), tagged(u"[PROPERTY:secret=:]"));
    EXPECT_EQ(on.properties->GetValueStr(u"kvTag.Data Tags"), u"refuse");
}

TEST(Rules, FilesOutsideTheRootAreNotIncluded) {
    TagTest on;
    for (const auto path :
         {u"C:\\in\\a.txt", u"C:\\in\\sub\\b.txt", u"C:\\inner\\c.txt", u"C:\\d.txt", u"\\\\srv\\e.txt"}) {
        on.services.files.set(path, "x");
    }
    on.set(u"kvTag.Include Root", u"C:\\in");
    on.set(u"p", u"C:\\d.txt");
    check(on, {{u"[INCLUDE=C:\\in\\a.txt:][INCLUDE=c:\\IN\\sub\\b.txt:][INCLUDE=C:\\in\\none.txt:]", u"xx", 0},
               {u"[INCLUDE=C:\\inner\\c.txt:]", u"", 1},
               {u"[INCLUDE=C:\\d.txt:]", u"", 1},
               {u"[INCLUDE=[PROPERTY:p=:]:]", u"", 1},
               {u"[INCLUDE=\\\\srv\\e.txt:]", u"", 1},
               {u"[SETPROPERTY:kvTag.Include Root=C\\::][INCLUDE=C:\\d.txt:]", u"", 2},
               {u"[SETPATH=C:\\:][INCLUDE=d.txt:]", u"C:\\", 1}});
}

TEST(Rules, LimitsAreLowered) {
    TagTest on;
    on.set(u"ten", u"0123456789");
    on.set(u"deep", u"[PROPERTY:deeper=:]");
    on.set(u"deeper", u"[PROPERTY:ten=:]");
    on.set(u"kvTag.Max Output", u"25");
    check(on, {{u"[PROPERTY:ten=:][PROPERTY:ten=:]|[PROPERTY:ten=:]|", u"01234567890123456789||", 1}});
    EXPECT_EQ(on.errors(), std::vector<std::u16string>{u"TAG: More than 25 characters in the result"});
    on.set(u"kvTag.Max Output", u"1000");
    on.set(u"kvTag.Max Tags", u"2");
    check(on, {{u"[PROPERTY:ten=:]|[PROPERTY:ten=:]|[PROPERTY:ten=:]", u"0123456789|0123456789|", 1}});
    on.set(u"kvTag.Max Tags", u"1000");
    on.set(u"kvTag.Max Depth", u"3");
    check(on, {{u"[PROPERTY:deeper=:]", u"0123456789", 0}, {u"<[PROPERTY:deep=:]>", u"<>", 1}});
    on.set(u"kvTag.Max Depth", u"many");
    check(on, {{u"[PROPERTY:ten=:]", u"", 1}});
}

}  // namespace
}  // namespace velmor::test
