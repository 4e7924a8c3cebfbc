// The handler ROWS, as a template sees it.

#include <gtest/gtest.h>

#include "core/TestTags.h"
#include "rtf/edit/RepeatedText.h"

namespace velmor {
namespace {

using test::tagged;
using test::TagTest;

// Three entries; each has a list of its own, of texts.
void addLines(privProperties& properties) {
    const PropertyRef lines = properties.AddStr(u"Lines", u"");
    for (int index = 1; index <= 3; ++index) {
        const std::u16string digit(1, static_cast<char16_t>(u'0' + index));
        privProperties& entry = *lines->Properties()->AddStr(digit, u"")->Properties();
        entry.AddStr(u"Item", u"{" + digit + u"}");
        if (index == 2) entry.AddStr(u"Note", u"fragile");
        const PropertyRef parts = entry.AddStr(u"Parts", u"");
        for (int part = 1; part <= index; ++part) parts->Properties()->AddLng(u"n", 10 * index + part);
    }
}

std::u16string rows(std::u16string_view parameters) {
    return tagged(std::u16string(u"<KV:ROWS>LIST=") + std::u16string(parameters) + u":]");
}

TEST(Rows, RepeatATextForEachEntry) {
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"Lines:TEXT=[PROPERTY:Item=:]", u"{1}{2}{3}"},
        {u"lines:BETWEEN=, :TEXT=[PROPERTY:Index=:]/[PROPERTY:Count=:]", u"1/3, 2/3, 3/3"},
        {u"Lines:TEXT=[PROPERTY:First=:] [PROPERTY:Last=:];", u"True False;False False;False True;"},
        {u"Lines:TEXT=[PROPERTY:Note=none:];", u"outside;fragile;outside;"},
        {u"Lines:TEXT=<KV:ROWS>LIST=Parts:TEXT=[PROPERTY:Value=:]([PROPERTY:Item=:]) :</KV>",
         u"11({1}) 21({2}) 22({2}) 31({3}) 32({3}) 33({3}) "},
        {u"[PROPERTY:Which=Lines:]:TEXT=x", u"xxx"},
        {u"Lines:TEXT=[SETPROPERTY:Sum=[PROPERTY:Sum=:]+:]:</KV>[PROPERTY:Sum=", u"+++"},
        {u"Empty:TEXT=x", u""},
        {u"Nothing:TEXT=x", u""},
        {u"Note:TEXT=x", u""},
        {u"Lines", u""},
        {u"Lines:ROW=absent.txt", u""},
    };
    TagTest on;
    for (const auto& [parameters, expected] : cases) {
        on.properties->RemoveAll();
        on.set(u"Note", u"outside");
        on.set(u"Empty", u"");
        addLines(*on.properties);
        EXPECT_EQ(on.evaluate(rows(parameters)), expected) << toUtf8(std::u16string_view(parameters));
        EXPECT_EQ(on.properties->GetValueStr(u"Note"), u"outside") << "restored";
        EXPECT_EQ(on.properties->Item(std::u16string_view(u"Index")), nullptr) << "removed";
    }
}

TEST(Rows, WithoutATemplateOrOfNoListLeaveAnEntry) {
    for (const char16_t* const parameters : {u"Text:TEXT=x", u"Lines", u"Lines:ROW=absent.txt"}) {
        TagTest on;
        on.set(u"Text", u"no list");
        addLines(*on.properties);
        EXPECT_EQ(on.evaluate(rows(parameters)), u"");
        EXPECT_EQ(on.errors().size(), 1U) << toUtf8(std::u16string_view(parameters));
    }
}

TEST(Rows, OfADocumentAreOneDocument) {
    TagTest on;
    addLines(*on.properties);
    on.services.files.set(u"C:\\t\\row.rtf",
                          "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\trowd\\cellx9\\intbl\\f0 "
                          "<KV:TAG>PROPERTY:Item=:</KV>\\cell\\row\\pard\\par}");
    on.set(u"Path", u"C:\\t");
    const std::u16string result = on.evaluate(u"{\\rtf1 " + rows(u"Lines:ROW=row.rtf") + u"\\par}");
    std::size_t tables = 0, rowsThere = 0;
    for (std::size_t at = 0; (at = result.find(u"\\fonttbl", at)) != result.npos; ++at) ++tables;
    for (std::size_t at = 0; (at = result.find(u"\\row", at)) != result.npos; ++at) ++rowsThere;
    EXPECT_EQ(tables, 1U);
    EXPECT_EQ(rowsThere, 3U);
    EXPECT_NE(result.find(u"\\{2\\}\\cell"), result.npos) << toUtf8(result);
}

TEST(Rows, RepeatTheRowsOfATableAndTheBodyOfOtherDocuments) {
    struct Case {
        std::u16string_view document, before, row, after;
    };
    const Case cases[] = {
        {u"{\\rtf1\\ansi\\pard\\trowd\\cellx1 a\\cell\\row\\pard\\par}", u"{\\rtf1\\ansi",
         u"\\pard\\trowd\\cellx1 a\\cell\\row", u"\\pard}"},
        {u"{\\rtf1\\trowd{\\intbl a\\cell}{\\trowd\\row}\\pard\\par }", u"{\\rtf1",
         u"\\trowd{\\intbl a\\cell}{\\trowd\\row}", u"\\pard}"},
        {u"{\\rtf1{\\fonttbl{\\f0 A;}}\\pard Text \\par}", u"{\\rtf1{\\fonttbl{\\f0 A;}}", u"{\\pard Text \\par}",
         u"}"},
        {u"{\\rtf1 \\trowd a\\cell\\row after}", u"{\\rtf1", u"{ \\trowd a\\cell\\row after}", u"}"},
        {u"{\\rtf1 before\\trowd a\\cell\\row}", u"{\\rtf1", u"{ before\\trowd a\\cell\\row}", u"}"},
        {u"{\\rtf1{\\trowd a\\cell\\row\\pard}}", u"{\\rtf1", u"{{\\trowd a\\cell\\row\\pard}}", u"}"},
    };
    for (const Case& each : cases) {
        const auto parts = repeatedTextOf(each.document);
        ASSERT_TRUE(parts);
        EXPECT_EQ(parts->before, each.before);
        EXPECT_EQ(parts->row, each.row);
        EXPECT_EQ(parts->after, each.after);
    }
    EXPECT_FALSE(repeatedTextOf(u"{\\rtf1 open"));
}

TEST(Rows, AreARegisteredHandlersIfThereIsOne) {
    TagTest on;
    addLines(*on.properties);
    on.addHandler(u"ROWS", 5, [](kvTag&) { return automation::Variant(u"mine"); });
    EXPECT_EQ(on.evaluate(rows(u"Lines:TEXT=x")), u"mine");
}

}  // namespace
}  // namespace velmor
