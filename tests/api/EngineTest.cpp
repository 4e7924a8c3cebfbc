#include <gtest/gtest.h>

#include <stdexcept>

#include "velmor/velmor.h"

namespace {

using velmor::Engine;
using velmor::Properties;
using velmor::TagCall;

Engine engine() {
    return Engine::make().value();
}

TEST(Engine, EvaluatesWithTypedPropertiesInBothEncodings) {
    Properties properties, child;
    properties.setText("Name", "Zo\u00eb");
    properties.setNumber(u"Count", 3);
    properties.setNumber(u"Price", 2.5);
    properties.setTruth(u"Paid", true);
    child.setText(u"City", u"Rome");
    properties.setProperties(u"Address", child);
    const velmor::Evaluated letter = engine().evaluate(
        "<KV:TAG>PROPERTY:name=x:</KV> <KV:TAG>PROPERTY:Count=x:</KV> <KV:TAG>PROPERTY:Price=x:</KV> "
        "<KV:TAG>PROPERTY:Absent=none:</KV>",
        properties);
    EXPECT_EQ(velmor::utf8(letter.text), "Zo\u00eb 3 2.5 none");
    EXPECT_TRUE(letter.errors.empty());
    EXPECT_EQ(properties.size(), 5u) << "options do not stay in the properties";
    EXPECT_EQ(properties.nameAt(4), u"Address");
    EXPECT_EQ(properties.text("PAID"), u"True");
    EXPECT_EQ(Properties::fromText(properties.toText()).toText(), properties.toText());
    EXPECT_TRUE(properties.remove(u"paid"));
    EXPECT_FALSE(properties.text(u"Paid"));
}

// With a trace, the result is never put together without an evaluation.
TEST(Engine, EvaluatesACompiledTemplateOften) {
    const Engine engine = ::engine();
    velmor::EvaluateOptions traced;
    traced.trace = true;
    const std::u16string tags = u"<KV:TAG>PROPERTY:Name=x:</KV></KV><KV:TAG>PROPERTY:Next=:</KV>";
    for (const auto* const before :
         {u"", u"{\\rtf1 \\trowd ", u"<", u"<KV:TAG>PROPERTY:None=<KV:TAG>PROPERTY:Name=:</KV>:</KV>"}) {
        for (const auto* const after : {u"", u"<KV:open"}) {
            const velmor::Template compiled = engine.compile(before + tags + after);
            for (const auto* const name :
                 {u"Ada", u"{Zo\u00eb}", u"<KV:TAG>PROPERTY:Next=:</KV>", u"KV:TAG>PROPERTY:Next=:"}) {
                Properties once, again;
                for (Properties* const each : {&once, &again}) {
                    each->setText(u"Name", name);
                    each->setText(u"Next", std::u16string_view(name).starts_with(u'<')
                                               ? u"<KV:TAG>SETPROPERTY:Next=2:</KV>1"
                                               : u"1");
                }
                EXPECT_EQ(engine.evaluate(compiled, again).text, engine.evaluate(compiled, once, traced).text);
            }
        }
    }
}

TEST(Engine, BracketsTheTablesOfValues) {
    Properties properties;
    properties.setText(u"Table", u"{\\rtf1 \\trowd\\irow0\\lastrow\\cellx1 \\cell\\row }");
    const std::u16string text = engine().evaluate("<KV:TAG>PROPERTY:Table=:</KV>", properties).text;
    EXPECT_NE(text.find(u"\\korvane\\starttable"), text.npos);
}

TEST(Engine, AsksTheProgramsHandlers) {
    Engine engine = ::engine();
    engine.setHandler("twice", [](const TagCall& tag) {
        const std::u16string text = tag.parameter(u"OF") + tag.property(u"Mark").value_or(u"?");
        tag.setProperty(u"Seen", tag.command());
        return text + tag.evaluate(u"<KV:TAG>PROPERTY:Mark=:</KV>") + (tag.isForRtf() ? u" {r}" : u"");
    });
    engine.setHandler("GROUP-BAD", [](const TagCall&) -> std::u16string { throw std::runtime_error("no paper"); });
    Properties properties;
    properties.setText(u"Mark", u"!");
    constexpr auto text = u"<KV:TWICE>GO:OF=\"<KV:TAG>PROPERTY:Mark=:</KV>\":</KV>";
    EXPECT_EQ(engine.evaluate(text, properties).text, u"!!!");
    EXPECT_EQ(properties.text(u"Seen"), u"GO");
    EXPECT_EQ(engine.evaluate(std::u16string(u"{\\rtf1 ") + text + u"}", properties).text, u"{\\rtf1 !!! \\{r\\}}");

    const velmor::Evaluated failed = engine.evaluate(u"a\nb<KV:GROUP-BAD>GO:</KV>c<KV:NONE>GO:</KV>", properties);
    EXPECT_EQ(failed.text, u"a\nbc");
    ASSERT_EQ(failed.errors.size(), 2u);
    EXPECT_EQ(failed.errors[0].message, u"no paper");
    EXPECT_EQ(failed.errors[0].position, 4u);
    EXPECT_EQ(failed.errors[1].handler, u"NONE");
}

TEST(Engine, OptionsHoldForOneEvaluation) {
    Properties properties;
    properties.setText(u"Data", u"<KV:TAG>PROPERTY:Secret=:</KV>");
    properties.setText(u"Secret", u"shown");
    constexpr auto text = u"<KV:TAG>PROPERTY:Data=:</KV>|<KV:TAG>PROPERTY:Absent=:</KV>";
    velmor::EvaluateOptions options;
    options.missing = velmor::Missing::mark;
    options.dataTags = velmor::DataTags::refuse;
    EXPECT_EQ(engine().evaluate(text, properties, options).text, u"<KV:TAG>PROPERTY:Secret=:</KV>|[Absent?]");
    EXPECT_EQ(engine().evaluate(text, properties).text, u"shown|");
    options.missing = velmor::Missing::fail;
    EXPECT_TRUE(engine().evaluate(text, properties, options).failed);
}

TEST(Engine, ListsTags) {
    const auto tags = engine().tags(u"x<KV:format>DATE:A=<KV:TAG>PROPERTY:d:</KV>:B:</KV>");
    ASSERT_EQ(tags.size(), 1u);
    EXPECT_EQ(tags[0].position, 2u);
    EXPECT_EQ(tags[0].handler, u"FORMAT");
    EXPECT_EQ(tags[0].command, u"DATE");
    ASSERT_EQ(tags[0].parameters.size(), 2u);
    EXPECT_EQ(tags[0].parameters[1].first, u"B");
    ASSERT_EQ(tags[0].tags.size(), 1u);
    EXPECT_EQ(tags[0].tags[0].command, u"PROPERTY");
}

TEST(Engine, CleansAndJoins) {
    const std::u16string document =
        u"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\rtf1\\ansi{\\fonttbl{\\f0 Courier;}}\\f0 in}\\par}";
    const std::u16string clean = engine().clean(document);
    EXPECT_NE(clean.find(u"Courier"), clean.npos);
    EXPECT_EQ(clean.find(u"{\\rtf", 1), clean.npos);
    EXPECT_EQ(engine().clean("plain"), u"plain");
    const auto joined = engine().join({document, document});
    ASSERT_TRUE(joined);
    EXPECT_EQ(joined.value().find(u"{\\rtf", 1), std::u16string::npos);
    EXPECT_EQ(engine().join({document, u"plain"}).failure().message, u"document 2 contains no RTF document");
    EXPECT_FALSE(engine().join({}));
}

TEST(Engine, SaysWhatItCannotRead) {
    velmor::EngineOptions options;
    options.registryFile = u"no such file.reg";
    EXPECT_EQ(Engine::make(options).failure().number, 53);
    EXPECT_EQ(Properties::fromFile("no such file").failure().number, 53);
}

}  // namespace
