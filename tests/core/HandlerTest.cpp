// Handlers: levels, failures, re-entrance; and limits.

#include <gtest/gtest.h>

#include "common/ByteText.h"
#include "common/Compression.h"
#include "core/ErrorLog.h"
#include "core/EvaluationRun.h"
#include "core/TestTags.h"

namespace velmor {
namespace {

using automation::Variant;
using test::ScriptedHandler;
using test::tagged;
using test::TagTest;
using Calls = std::vector<std::string>;
using Errors = std::vector<std::u16string>;

Variant answer(kvTag& tag) {
    return Variant(std::u16string(u"[").append(tag.CommandName()).append(u"]"));
}

TEST(Handler, IsCalledByItsLevel) {
    const Calls asked{"Interface"}, called{"Interface", "GetTagValue", "Interface"};
    const Calls disposed{"Interface", "GetTagValue", "Interface", "Dispose"};
    for (const auto& [level, calls] : {std::pair(0, asked), {2, asked}, {3, called}, {4, called}, {5, disposed}}) {
        TagTest on;
        on.addHandler(u"H", level, answer);
        EXPECT_EQ(on.evaluate(u"<KV:h>x:</KV>"), level < 3 ? u"" : u"[X]");
        EXPECT_EQ(on.calls, calls);
        const std::u16string old = u"H: Tag Handler is for an old version of Quillmark. Handler Class: Test.H";
        EXPECT_EQ(on.errors(), level < 3 ? Errors{old} : Errors{});
    }
}

TEST(Handler, MissingHandlersGiveNothingOrAMessage) {
    TagTest on;
    EXPECT_EQ(on.evaluate(u"a<KV:NOTREGISTERED>X:</KV>b<KV:none</KV>c"), u"abc");
    EXPECT_EQ(on.errors(),
              (Errors{u"NOTREGISTERED: Tag Handler not found. The handler's class name is not registered"}));
    on.addHandler(u"OLD", 2, answer);
    on.properties->AddBoolean(u"kvTag.No Handler Show Message", true);
    EXPECT_EQ(on.evaluate(u"<KV:NotRegistered>X:</KV>"), u"system handler not found: NOTREGISTERED");
    EXPECT_EQ(on.evaluate(u"<KV:OLD>X:</KV>"), u"system handler too old: OLD");
    on.set(u"kvTag.No Handler Message", u"gone");
    EXPECT_EQ(on.evaluate(u"<KV:G-N>X:</KV>"), u"gone: N");
}

TEST(Handler, ResultsAreEvaluatedAndEscaped) {
    TagTest on;
    on.services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\SubHandlers\\GRP\\", u"NAME", u"Grouped");
    on.services.objects.add(u"Grouped", [&] { return std::make_shared<ScriptedHandler>(3, answer, on.calls); });
    EXPECT_EQ(on.evaluate(u"<KV:grp-name>X:</KV>"), u"[X]");
    on.set(u"a", u"}");
    on.addHandler(u"H", 3, [](kvTag&) { return Variant(tagged(u"{[PROPERTY:a=:]")); });
    EXPECT_EQ(on.evaluate(u"<KV:H>:</KV>"), u"{}");
    EXPECT_EQ(on.evaluate(u"{\\rtf1 <KV:H>:</KV>}"), u"{\\rtf1 \\{\\}}");
    on.addHandler(u"N", 3, [](kvTag&) { return Variant(std::int32_t{42}); });
    EXPECT_EQ(on.evaluate(u"<KV:N>:</KV>"), u"42");
    on.addHandler(u"M", 3, [](kvTag& tag) {
        return Variant(tag.GetProcessedElementsValue(u"p").append(tag.ProcessName(u"TAG>@VERSION:")));
    });
    EXPECT_EQ(on.evaluate(u"<KV:M>X:p=[@VERSION:]:</KV>"), u"11");
}

TEST(Handler, FailuresKeepTheValue) {
    TagTest on;
    on.addHandler(u"F", 3, [](kvTag& tag) -> Variant {
        tag.Value(u"so far");
        throw Error(1234, u"Test", u"It broke");
    });
    EXPECT_EQ(on.evaluate(u"a<KV:F>x:</KV>b"), u"aso farb");
    EXPECT_EQ(on.errors(), (Errors{u"F: It broke"}));
    const PropertiesRef details = on.last->ErrorLog()->Item(1)->Properties();
    EXPECT_EQ(details->GetValueLng(u"Err"), 1234);
    EXPECT_EQ(details->GetValueStr(u"TagData"), u"F>x:");

    on.addHandler(u"D", ScriptedHandler::failingDispose, answer);
    EXPECT_EQ(on.evaluate(u"<KV:D>x:</KV>"), u"[X]");
    EXPECT_EQ(on.errors(), (Errors{u"D: Dispose failed"}));

    on.services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Handlers", u"C", u"Test.Missing");
    on.services.objects.fail(u"Test.Missing");
    EXPECT_EQ(on.evaluate(u"a<KV:C>x:</KV>b[@VERSION:]"), u"ab1");
    ASSERT_EQ(on.errors().size(), 1u);
    EXPECT_EQ(on.last->ErrorLog()->Item(1)->Properties()->GetValueLng(u"Err"), 429);

    on.addHandler(u"A", 3, [](kvTag&) { return Variant(automation::Null()); });
    EXPECT_EQ(on.evaluate(u"a<KV:A>x:</KV>b"), u"ab");
    EXPECT_EQ(on.errors().size(), 1u);
}

TEST(Handler, MayReenter) {
    TagTest on;
    std::u16string seen;
    on.addHandler(u"R", 3, [&](kvTag& tag) {
        seen = std::u16string(tag.Result()).append(u"|").append(on.last->Result());
        return Variant(u"r");
    });
    EXPECT_EQ(on.evaluate(u"1[@VERSION:]2<KV:R>:</KV>3[@VERSION:]"), u"112r31");
    EXPECT_EQ(seen, tagged(u"|1123[@VERSION:]"));

    on.addHandler(u"V", 3, [](kvTag& tag) {
        tag.Value(u"<KV:V>:</KV>");
        tag.Name(u"V>other:");
        return Variant(u"v");
    });
    EXPECT_EQ(on.evaluate(u"<<KV:V>:</KV>>"), u"<v>");
    on.addHandler(u"D", 3, [](kvTag& tag) {
        tag.Dispose();
        return Variant(tagged(u"[PROPERTY:a=none:]"));
    });
    on.set(u"a", u"1");
    EXPECT_EQ(on.evaluate(u"<KV:D>:</KV><KV:TAG>PROPERTY:a=:</KV>"), u"none1");
    on.addHandler(u"T", 3, [&](kvTag&) {
        on.last->Dispose();
        return Variant(u"t");
    });
    EXPECT_EQ(on.evaluate(u"<KV:T>:</KV>[@VERSION:]"), u"t1");
    on.addHandler(u"W", 3, [&](kvTag&) {
        on.last->Value(tagged(u"new [@VERSION:]"));
        return Variant(u"w");
    });
    EXPECT_EQ(on.evaluate(u"<KV:W>:</KV>[@VERSION:]"), u"w1");
    EXPECT_EQ(on.last->Result(), u"new 1");
}

// A host whose only reference is released by a handler, or by its own collection.
TEST(Handler, MayReleaseEverythingThatItReaches) {
    TagTest on;
    std::shared_ptr<kvTag> host;
    std::function<void()> letGo;
    on.addHandler(u"H", 5, [&](kvTag& tag) {
        Variant name(tag.CommandName());
        return letGo(), name;
    });
    on.set(u"p", u"<KV:H>x:</KV>");
    struct Collecting final : automation::Object {
        std::function<void()>& letGo;
        explicit Collecting(std::function<void()>& act) : letGo(act) {}
        Variant invoke(std::u16string_view, automation::InvokeKind, std::span<Variant>) override { return letGo(), 1; }
        std::u16string typeName() const override { return u"Collecting"; }
    };
    const std::function<std::u16string(kvTag&)> members[] = {
        [](kvTag& tag) { return tag.Result(); },
        [](kvTag& tag) { return tag.ProcessValue(u"<KV:H>x:</KV>"); },
        [](kvTag& tag) { return tag.ProcessName(u"H>x"); },
        [](kvTag& tag) { return tag.GetProcessedPropertiesValue(u"p"); },
        [](kvTag& tag) { return tag.GetProcessedVariablesValue(u"none", u"<KV:H>x:</KV>"); },
        [](kvTag& tag) { return tag.Name(u"A>b=<KV:H>x:</KV>:"), tag.CommandValueProcessed(); },
        [](kvTag& tag) { return tag.Name(u"A>b:c=<KV:H>x:</KV>:"), tag.GetProcessedElementsValue(u"c"); },
        [](kvTag& tag) { return tag.Name(u"H>x:"), tag.Result(); },
    };
    const std::function<void()> actions[] = {
        [&] { host.reset(); },
        [&] { host->Value(u"new"), host.reset(); },
        [&] { host->Name(u"other"), host.reset(); },
        [&] { host->Dispose(), host.reset(); },
        [&] { host->Tags()->Item(1)->Dispose(), host->Properties({}), host.reset(); },
    };
    for (const auto& member : members) {
        for (const auto& action : actions) {
            letGo = action;
            host = on.make(u"<KV:H>x:</KV>");
            EXPECT_EQ(member(*host), u"X") << &member - members << &action - actions;
        }
    }
    letGo = [&] { host.reset(); };
    for (const auto& member : {members[3], std::function([](kvTag& tag) { return tag.Dispose(), std::u16string(); }),
                               std::function([](kvTag& tag) { return tag.CleanRTFByVal(u"{\\rtf1 }"); })}) {
        host = on.make(u"");
        host->Properties(Collection(std::make_shared<Collecting>(letGo)));
        member(*host);
        EXPECT_EQ(host, nullptr);
    }
}

// --- limits ---

TEST(Limits, StopTextsThatReadThemselves) {
    TagTest on;
    on.set(u"a", u"x[PROPERTY:b=:]");
    on.set(u"b", u"y[PROPERTY:a=:][PROPERTY:a=:]");
    const std::u16string result = on.evaluate(u"[PROPERTY:a=:]|[@VERSION:]");
    EXPECT_TRUE(result.starts_with(u"xyxyxy") && result.ends_with(u"|1"));
    EXPECT_EQ(result.size(), deepestLevel - 1u + 2u);
    EXPECT_EQ(on.errors(), (Errors{u"TAG: Tags are nested beyond 100 levels"}));

    on.services.files.set(u"C:\\a.txt", ".<KV:TAG>INCLUDE=C:\\a.txt:</KV><KV:TAG>INCLUDE=C:\\a.txt:</KV>");
    EXPECT_EQ(on.evaluate(u"[INCLUDE=C:\\a.txt:]"), std::u16string(99, u'.'));
    EXPECT_EQ(on.evaluate(u"[INCLUDE=C:\\a.txt:][INCLUDE=C:\\a.txt:]"), std::u16string(198, u'.'));
    EXPECT_EQ(on.errors().size(), 1u);

    on.addHandler(u"H", 5, [](kvTag&) { return Variant(u".<KV:H>:</KV>"); });
    EXPECT_EQ(on.evaluate(u"<KV:H>:</KV>"), std::u16string(99, u'.'));
    EXPECT_EQ(on.errors(), (Errors{u"H: Tags are nested beyond 100 levels"}));
    on.addHandler(u"P", 3, [](kvTag& tag) { return Variant(tag.ProcessValue(u".<KV:P>:</KV>")); });
    EXPECT_EQ(on.evaluate(u"<KV:P>:</KV>").size(), 49u);
    EXPECT_EQ(on.errors().size(), 1u);
    on.addHandler(u"S", 3, [&](kvTag&) { return Variant(on.make(u".<KV:S>:</KV>")->Result()); });
    EXPECT_EQ(on.evaluate(u"<KV:S>:</KV>").size(), 49u);
}

TEST(Limits, TheErrorLogCountsTheRest) {
    TagTest on;
    struct Heard final : ErrorListener {
        std::vector<std::tuple<std::int32_t, std::int32_t, std::u16string>> tags;
        void heard(const ErrorLogEntry&, const OutermostTag& tag) override {
            tags.emplace_back(tag.index, tag.position, tag.text);
        }
    } listener;
    on.set(u"p", u"<KV:N>:</KV>");
    std::u16string text = u"[@AUTHOR] [PROPERTY:p]";
    for (int i = 0; i < 10'041; ++i) text += u"<KV:N>:</KV>";
    on.evaluate(text);
    EXPECT_EQ(on.errors().size(), 10'001u);
    EXPECT_EQ(on.errors().back(), u"N: 42 more errors are not listed");
    ASSERT_EQ(listener.tags.size(), 10'042u);
    EXPECT_EQ(listener.tags[0], std::tuple(2, 22, tagged(u"[PROPERTY:p]")));
    EXPECT_EQ(listener.tags[2], std::tuple(4, 57, u"<KV:N>:</KV>"));
    on.evaluate(u"<KV:N>:</KV>");
    EXPECT_EQ(on.errors().size(), 1u);
}

TEST(Limits, StopTheGrowthOfSmallTemplates) {
    TagTest on;
    std::u16string doubling = u"{\\rtf1 <[SETPROPERTY:p0=\"\\\":]";
    for (char16_t i = u'A'; i < u'A' + 40; ++i) {
        const std::u16string last(1, i), next(1, i + 1);
        doubling +=
            std::u16string(u"[SETPROPERTY:n") + next + u"=[PROPERTY:n" + last + u"=\\:][PROPERTY:n" + last + u"=:]:]";
    }
    EXPECT_EQ(on.evaluate(doubling + u"[@VERSION:]>}").substr(0, 20), u"{\\rtf1 <1>}");
    EXPECT_EQ(on.errors(), Errors{u"TAG: More than 33,554,432 characters held at once in one evaluation"});

    const std::u16string bomb = u"[PROPERTY:x=~GZ\"" + base64(compressBytes(std::string(33'554'433, 'x'))) + u"\":]";
    EXPECT_EQ(on.evaluate(u"<" + bomb + u"[@VERSION:]" + bomb + u">"), u"<1>");
    EXPECT_EQ(on.errors(), Errors{u"TAG: More than 33,554,432 bytes of compressed values in one evaluation"});

    on.services.files.set(u"C:\\a.txt", std::string(14'000'000, '.') + "<KV:TAG>@VERSION:</KV>");
    const std::u16string five =
        u"[INCLUDE=C:\\a.txt:][INCLUDE=C:\\a.txt:][INCLUDE=C:\\a.txt:][INCLUDE=C:\\a.txt:][INCLUDE=C:\\a.txt:]";
    EXPECT_EQ(on.evaluate(five).size(), 70'000'005u);
    EXPECT_EQ(on.errors(), Errors{u"TAG: The values of further tags within tags are not kept"});
    EXPECT_EQ(on.last->Tags()->Item(4)->Value().back(), u'>');
    EXPECT_EQ(on.last->Tags()->Item(5)->Value().back(), u'1');
}

TEST(Limits, AllowTheDeepestLevel) {
    TagTest on;
    for (char16_t i = 0; i < 98; ++i) {
        const char16_t name = u'\u4E00' + i, next = name + 1;
        on.set(std::u16string(1, name), std::u16string(u"[PROPERTY:") + next + u"=end:]");
    }
    EXPECT_EQ(on.evaluate(u"[PROPERTY:\u4E00=:]"), u"end");
    EXPECT_TRUE(on.errors().empty());
}

TEST(Limits, KeepUnclosedNestedAndStrayMarkers) {
    TagTest on;
    for (const std::u16string_view odd : {std::u16string_view(u"\0", 1), {u"\xD800", 1}, {u"\xDC00", 1}}) {
        const std::u16string unit(odd);
        EXPECT_EQ(on.evaluate(unit + u"[PROPERTY:a=x:]" + unit), unit + u"x" + unit);
        EXPECT_EQ(on.evaluate(u"<KV:" + unit + u"</KV>" + unit), unit);
    }
    EXPECT_EQ(on.evaluate(u"</KV><KV:<KV:<KV:</KV><KV:"), u"</KV><KV:<KV:<KV:");
    std::u16string open, close, many, expected;
    for (int i = 0; i < 250000; ++i) open += u"<KV:", close += u"</KV>";
    EXPECT_EQ(on.evaluate(open), open);
    EXPECT_EQ(on.evaluate(open + close), u"");
    for (char16_t i = 0; i < 20000; ++i) {
        many += std::u16string(u"[@VERSION:],[PROPERTY:n") + static_cast<char16_t>(u'\u4E00' + i) + u"=y]";
        expected += u"1,y";
    }
    EXPECT_EQ(on.evaluate(many), expected);
}

}  // namespace
}  // namespace velmor
