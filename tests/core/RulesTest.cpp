// What a host asks of an evaluation by properties ("kvTag.Missing" and others), and attempts to get around it.

#include <gtest/gtest.h>

#include <algorithm>

#include "core/TestTags.h"
#include "rtf/edit/EmptyParagraphs.h"

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
    on.properties->AddStr(u"rows", u"")->Properties()->AddStr(u"row", tagged(u"[PROPERTY:secret=:]"));
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
               // By way of repeated entries, another property, the rule itself, and a value that is evaluated while it
               // is set.
               {u"<KV:ROWS>LIST=rows:TEXT=[PROPERTY:Value=:]:</KV>", u"[PROPERTY:secret=:]", 1},
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

// Each text with its result if the property "none" has the empty text.
void checkDropping(TagTest& on, std::initializer_list<std::pair<std::u16string_view, std::u16string_view>> cases) {
    on.set(u"none", u"");
    on.set(u"some", u"x");
    on.set(u"kvTag.Drop Empty Paragraphs", u"True");
    for (const auto& [text, result] : cases) {
        // "@" is an empty tag, "&" one that is not.
        std::u16string longer;
        for (const char16_t unit : text) {
            longer += unit == u'@'   ? u"[PROPERTY:none=:]"
                      : unit == u'&' ? u"[PROPERTY:some=:]"
                                     : std::u16string(1, unit);
        }
        EXPECT_EQ(on.evaluate(longer), result) << toUtf8(text);
    }
}

TEST(Rules, EmptyLinesGo) {
    TagTest on;
    on.services.files.set(u"C:\\lines.txt", "<KV:TAG>PROPERTY:none=:</KV>\r\nb\r\n<KV:TAG>PROPERTY:none=:</KV>\r\n");
    on.services.files.set(u"C:\\empty.txt", "<KV:TAG>PROPERTY:none=:</KV>\r\n");
    on.addHandler(u"H", 4, [](kvTag& tag) {
        return automation::Variant(tag.CommandValueProcessed() + tag.ProcessValue(tagged(u"<[PROPERTY:none=:]>")) +
                                   tag.ProcessName(u"TAG>PROPERTY:none=:"));
    });
    on.set(u"nested", u"[PROPERTY:none=:]");
    checkDropping(on, {{u"a\r\n@\r\nb\n\t@ @ \nc\r@\rd", u"a\r\nb\nc\rd"},
                       {u"a @\n&@\n\n \n@", u"a \nx\n\n \n"},
                       {u"\uFEFF@\na", u"\uFEFFa"},
                       {u"@\n[SETPROPERTY:s=1:]\n[PROPERTY:nested=:]\n<KV:TAG>none:</KV>\na", u"a"},
                       {u"a\n[INCLUDE=C:\\lines.txt:]\nc", u"a\nb\r\n\nc"},
                       {u"a\n[INCLUDE=C:\\empty.txt:]\nc", u"a\nc"},
                       {u"<KV:H>V=@:</KV>\n<KV:H>V=[PROPERTY:nested=:]:</KV>", u"<>\n<>"},
                       // Tags that change places.
                       {u"@\n[PROPERTY:none=]\n&\n[PROPERTY:some=]", u"x\nx"}});
    EXPECT_EQ(on.evaluate(u"[PROPERTY:nested=:]|[INCLUDE=C:\\lines.txt:]"), u"|\r\nb\r\n");
    EXPECT_EQ(on.last->Tags()->Item(2)->Result(), u"\r\nb\r\n\r\n");
    on.set(u"kvTag.Drop Empty Paragraphs", u"False");
    EXPECT_EQ(on.evaluate(u"[PROPERTY:none=:]\na\uFDD1"), u"\na\uFDD1");
    on.set(u"kvTag.Drop Empty Paragraphs", u"maybe");
    EXPECT_EQ(on.evaluate(u"a"), u"");
}

TEST(Rules, EmptyRtfParagraphsGo) {
    TagTest on;
    on.services.files.set(u"C:\\in.rtf", "{\\rtf1{\\fonttbl{\\f0 A;}}\\pard <KV:TAG>PROPERTY:none=:</KV>\\par}");
    on.services.files.set(u"C:\\in.txt", "<KV:TAG>PROPERTY:none=:</KV>\r\n");
    checkDropping(on, {{u"{\\rtf1 a\\par [INCLUDE=C:\\in.rtf:]\\par [INCLUDE=C:\\in.txt:]\\par b}",
                        u"{\\rtf1 a\\par {\\rtf1{\\fonttbl{\\f0 A;}}\\pard }b}"}});
    const std::pair<std::u16string_view, std::u16string_view> cases[] = {
        {u"{\\rtf1 a\\par @\\par b\\par}", u"{\\rtf1 a\\par b\\par}"},
        // What other paragraphs inherit stays, words stay apart, and groups stay balanced.
        {u"{\\rtf1\\pard\\qc @\\par b\\par}", u"{\\rtf1\\pard\\qc b\\par}"},
        {u"{\\rtf1\\b@\\par b\\par}", u"{\\rtf1\\b b\\par}"},
        {u"{\\rtf1 a\\par{\\b @}{\\i @ \\par b}\\par}", u"{\\rtf1 a\\par{\\b }{\\i b}\\par}"},
        {u"{\\rtf1 a\\par\\pard @ \\tab\\line @\r\n\\par\r\nb}", u"{\\rtf1 a\\par\\pard \r\n\r\nb}"},
        {u"{\\rtf1\\pard{\\listtext 1.\\tab}@\\par b}", u"{\\rtf1\\pard b}"},
        // What belongs to a paragraph keeps it.
        {u"{\\rtf1 @{\\*\\bkmkstart n}\\par @{\\pict @@}\\par @{\\field}\\par @\\~\\par @\\page\\par\\par}",
         u"{\\rtf1 {\\*\\bkmkstart n}\\par {\\pict }\\par {\\field}\\par \\~\\par \\page\\par\\par}"},
        {u"{\\rtf1 @ {\\footnote @\\par a}\\par}", u"{\\rtf1  {\\footnote a}\\par}"},
        {u"{\\rtf1 x\\par{\\info{\\title @}}{\\*\\x @}\\par x}", u"{\\rtf1 x\\par{\\info{\\title }}{\\*\\x }\\par x}"},
        // Headers and footers have paragraphs of their own; the last one stays.
        {u"{\\rtf1{\\header\\pard @\\par h\\par @}@\\par a @}", u"{\\rtf1{\\header\\pard h\\par }a }"},
        // Cells and rows stay, and so does what separates two tables.
        {u"{\\rtf1\\trowd\\intbl @\\par a\\cell @ \\cell\\row\\pard @\\par b}",
         u"{\\rtf1\\trowd\\intbl a\\cell  \\cell\\row\\pard b}"},
        {u"{\\rtf1\\trowd\\intbl\\cell\\row\\pard @\\par @\\par\\trowd\\intbl\\cell\\row\\pard @\\par}",
         u"{\\rtf1\\trowd\\intbl\\cell\\row\\pard \\par \\trowd\\intbl\\cell\\row\\pard \\par}"},
        {u"{\\rtf1\\trowd\\intbl\\cell\\row\\pard @\\par\\par\\trowd}",
         u"{\\rtf1\\trowd\\intbl\\cell\\row\\pard \\par\\trowd}"},
        // Binary data, unbalanced braces and a backslash at the end.
        {u"{\\rtf1 @{\\bin2 {}}\\par}}@\\par\\", u"{\\rtf1 {\\bin2 {}}}}\\"}};
    for (const auto& [text, result] : cases) {
        std::u16string marked(text);
        std::replace(marked.begin(), marked.end(), u'@', emptyTag);
        dropEmptyParagraphs(marked, true);
        EXPECT_EQ(marked, result) << toUtf8(text);
    }
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
