// The tag object: markup, state, what children share.

#include <gtest/gtest.h>

#include "core/TestTags.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;
using test::TagTest;

std::vector<std::u16string> namesOf(kvTags& tags) {
    std::vector<std::u16string> names;
    for (std::int32_t i = 1; i <= tags.Count(); ++i) names.push_back(tags.Item(i)->Name());
    return names;
}

TEST(Tag, FindsTopLevelTags) {
    using Names = std::vector<std::u16string>;
    const struct {
        const char16_t* text;
        Names names;
    } cases[] = {
        {u"none", {}},
        {u"<KV:A>X:</KV><KV:B>Y:</KV>", {u"A>X:", u"B>Y:"}},
        {u"<KV:A>X:<KV:B>Y:</KV>:</KV>", {u"A>X:<KV:B>Y:</KV>:"}},
        {u"<kv:A>X:</kv>", {u"A>X:"}},
        {u"<KV:A>X</KV>", {u"A>X:"}},
        {u"<KV:A>X:", {}},
        {u"<KV:A>X: <KV:B>Y:</KV>", {u"B>Y:"}},
        {u"<KV:<KV:B>Y:</KV>", {}},  // the search goes on 5 units behind an unclosed marker
        {u"<KV:x<KV:B>Y:</KV>", {u"B>Y:"}},
        {u"<KV:</KV>", {u":"}},
        {u"</KV><KV:A>X:</KV>", {u"A>X:"}},
        {u"<KV:<KV:<KV:</KV><KV:", {u":"}},
    };
    TagTest on;
    for (const auto& one : cases) EXPECT_EQ(namesOf(*on.make(one.text)->Tags()), one.names);
}

TEST(Tag, SplitsItsName) {
    TagTest on;
    kvTag tag(on.services);
    EXPECT_EQ(tag.HandlerName(), u"");
    tag.Name(u"tag>setproperty:a=b");
    EXPECT_EQ(tag.Name(), u"tag>setproperty:a=b:");
    EXPECT_EQ(tag.HandlerName(), u"TAG");
    EXPECT_EQ(tag.CommandName(), u"SETPROPERTY");
    EXPECT_EQ(tag.Elements()->GetValueStr(u"A"), u"b");
    tag.Name(u"TAG>INCLUDE=file.kvl:");
    EXPECT_TRUE(tag.CommandValue().identical(Variant(u"file.kvl")));
    tag.Name(u"TAG>INCLUDE=<KV:TAG>@VERSION:</KV>.kvl:");
    EXPECT_EQ(tag.CommandValueProcessed(), u"1.kvl");
    tag.Name(u"TAG");
    EXPECT_EQ(tag.CommandName(), u"");
    EXPECT_TRUE(tag.CommandValue().identical(Variant(u"")));
}

TEST(Tag, RtfTurnsProtectionOnForGood) {
    TagTest on;
    EXPECT_TRUE(on.make(u"{\\rtf1 }")->ProtectRTF());
    EXPECT_FALSE(on.make(u"{\\RTF1 }")->ProtectRTF());
    const auto tag = on.make(u"{\\rtf1 }");
    tag->Value(u"plain");
    EXPECT_TRUE(tag->ProtectRTF());
}

TEST(Tag, EscapesResultsInRtf) {
    TagTest on;
    on.set(u"a", u"a{b}c\\d\r\ne");
    on.set(u"rtf", u"{\\rtf1 <KV:TAG>PROPERTY:b=:</KV>}");
    on.set(u"b", u"}");
    EXPECT_EQ(on.evaluate(u"{\\rtf1 <KV:TAG>PROPERTY:a=:</KV>}"), u"{\\rtf1 a\\{b\\}c\\\\d\\par e}");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:a=:</KV>"), u"a{b}c\\d\r\ne");
    // Within a plain template a document's own tags are escaped, those beside it are not.
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:rtf=:</KV> <KV:TAG>PROPERTY:b=:</KV>"), u"{\\rtf1 \\}} }");
    EXPECT_TRUE(on.last->Tags()->Item(1)->ProtectRTF());
    EXPECT_FALSE(on.last->Tags()->Item(2)->ProtectRTF());
}

TEST(Tag, EvaluatesOnceUntilArmedAgain) {
    TagTest on;
    on.set(u"a", u"1");
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:a=:</KV>"), u"1");
    on.set(u"a", u"2");
    EXPECT_EQ(on.last->Result(), u"1");
    EXPECT_EQ(on.last->Tags()->Item(1)->Result(), u"1");
    on.last->Value(u"<KV:TAG>PROPERTY:a=:</KV>");
    EXPECT_EQ(on.last->Result(), u"2");
    on.last->Name(u"TAG>PROPERTY:a=:");
    on.set(u"a", u"3");
    EXPECT_EQ(on.last->Result(), u"3");
}

TEST(Tag, TagsShowWhatTheyBecame) {
    TagTest on;
    on.set(u"a", u"<KV:TAG>PROPERTY:b=:</KV>+<KV:TAG>PROPERTY:c=none:</KV>");
    on.set(u"b", u"B");
    const auto tag = on.make(u"x<KV:TAG>PROPERTY:b=:</KV>y<KV:TAG>PROPERTY:a=:</KV>z");
    const auto early = tag->Tags()->Item(2);
    EXPECT_EQ(early->Value(), u"");
    EXPECT_EQ(tag->Result(), u"xByB+nonez");
    EXPECT_EQ(tag->Tags()->Item(2), early);
    for (int pass = 0; pass < 2; ++pass) {
        const auto item = on.last ? on.last->Tags()->Item(2) : early;
        EXPECT_TRUE(item->isChild());
        EXPECT_EQ(item->Value(), u"<KV:TAG>PROPERTY:b=:</KV>+<KV:TAG>PROPERTY:c=none:</KV>");
        EXPECT_EQ(item->Result(), u"B+none");
        EXPECT_EQ(item->Tags()->Item(2)->Result(), u"none");
        EXPECT_EQ(item->Tags()->Item(1)->Name(), u"TAG>PROPERTY:b=:");
        // Now the same for one that nobody asked for before.
        on.evaluate(u"x<KV:TAG>PROPERTY:b=:</KV>y<KV:TAG>PROPERTY:a=:</KV>z");
    }
    EXPECT_EQ(tag->Tags()->Item(3), nullptr);
    EXPECT_EQ(tag->Tags()->Item(0), nullptr);
    EXPECT_EQ(tag->Tags()->Item(Variant(u"1")), nullptr);
    EXPECT_EQ(tag->Tags()->Item(Variant(1.0))->Result(), u"B");
}

// A tag that a reader evaluated first keeps its result; a skipped one is left alone.
TEST(Tag, TagsBesideTheirPlace) {
    TagTest on;
    on.set(u"a", u"1");
    const auto tag = on.make(u"<KV:TAG>PROPERTY:a=:</KV>");
    EXPECT_EQ(tag->Tags()->Item(1)->Result(), u"1");
    on.set(u"a", u"2");
    EXPECT_EQ(tag->Result(), u"1");
    // The first takes the place within the second, whose text is then found nowhere.
    EXPECT_EQ(on.evaluate(u"<KV:TAG>PROPERTY:a</KV><KV:X>b=<KV:TAG>PROPERTY:a:</KV>:</KV>"),
              u"<KV:TAG>PROPERTY:a</KV><KV:X>b=2:</KV>");
    EXPECT_EQ(on.last->Tags()->Item(1)->Result(), u"2");
    EXPECT_EQ(on.last->Tags()->Item(2)->Value(), u"");
}

TEST(Tag, ChildrenShareWhatTheParentHadWhenItsValueWasSet) {
    TagTest on;
    const auto tag = on.make(u"<KV:TAG>PROPERTY:a=none:</KV>");
    const auto later = std::make_shared<privProperties>(on.services);
    later->AddStr(u"a", u"later");
    tag->Properties(Collection(later));
    tag->ProtectRTF(true);
    EXPECT_EQ(tag->Result(), u"none");
    const auto child = tag->Tags()->Item(1);
    EXPECT_EQ(child->Properties().object(), on.properties);
    EXPECT_EQ(child->ErrorLog(), tag->ErrorLog());
    EXPECT_EQ(child->privateVariables(), tag->privateVariables());
    EXPECT_FALSE(child->ProtectRTF());
    const auto made = tag->NewTag();
    EXPECT_EQ(made->Properties().object(), later);
    EXPECT_TRUE(made->ProtectRTF());
    EXPECT_TRUE(made->isChild());
    EXPECT_EQ(tag->Tags()->Count(), 1);
}

TEST(Tag, ProcessesSingleTexts) {
    TagTest on;
    on.set(u"n", u"<KV:TAG>PROPERTY:m=:</KV>!");
    on.set(u"m", u"deep");
    on.set(u"low", u"<kv:TAG>PROPERTY:m=:</kv>");
    const auto tag = on.make(u"");
    EXPECT_EQ(tag->ProcessValue(u"<KV:TAG>PROPERTY:n=:</KV>?"), u"deep!?");
    EXPECT_EQ(tag->ProcessName(u"TAG>PROPERTY:n=:"), u"deep!");
    EXPECT_EQ(tag->ProcessName(u"no handler"), u"");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"N"), u"deep!");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"low"), u"<kv:TAG>PROPERTY:m=:</kv>");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"none", u"<KV:TAG>@VERSION:</KV>"), u"1");
    EXPECT_EQ(tag->GetProcessedVariablesValue(u"none", u"default"), u"default");
    tag->Name(u"X>Y:p=<KV:TAG>PROPERTY:m=:</KV>:");
    EXPECT_EQ(tag->GetProcessedElementsValue(u"P"), u"deep");
    EXPECT_EQ(tag->GetProcessedElementsValue(u"q", Variant(std::int32_t{7})), u"7");
}

TEST(Tag, DisposeReleasesAndKeepsTheResult) {
    TagTest on;
    on.set(u"a", u"1");
    on.evaluate(u"<KV:TAG>PROPERTY:a=:</KV>");
    const auto tags = on.last->Tags();
    const auto child = tags->Item(1);
    on.last->Dispose(false);
    EXPECT_EQ(on.last->Tags(), nullptr);
    EXPECT_EQ(tags->Count(), 0);
    EXPECT_NE(child->Properties().object(), on.properties);
    EXPECT_NE(on.last->Properties().object(), on.properties);
    EXPECT_EQ(on.last->Result(), u"1");
    EXPECT_EQ(on.properties->Count(), 1);
}

TEST(Tag, LogsErrors) {
    TagTest on;
    kvTag tag(on.services);
    std::int32_t number = 5;
    tag.LogError(u"X", u"msg");
    tag.LogError(u"X", u"second", number, u"data", u"more");
    const PropertiesRef log = tag.ErrorLog();
    ASSERT_EQ(log->Count(), 2);
    EXPECT_EQ(log->Item(1)->ValueStr(), u"msg");
    EXPECT_EQ(log->Item(1)->Properties()->Count(), 1);
    EXPECT_EQ(log->Item(1)->Properties()->GetValueDate(u"DateTime").days, on.services.clock.now().days);
    const PropertiesRef details = log->Item(2)->Properties();
    EXPECT_EQ(details->GetValueLng(u"Err"), 5);
    EXPECT_EQ(details->GetValueStr(u"TagData"), u"data");
    EXPECT_EQ(details->GetValueStr(u"ErrData"), u"more");
}

// What a host may put in the place of our collection.
class HostCollection final : public automation::Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        if (name == u"GetValue") return own->GetValue(*arguments[0].get<std::u16string>(), arguments[1]);
        if (name == u"Item") return ObjectRef(own->Item(*arguments[0].get<std::u16string>()));
        if (name == u"Add") {
            return ObjectRef(own->Add(*arguments[0].get<std::u16string>(), arguments[1], *arguments[2].get<bool>()));
        }
        throw Error(438, u"Host", u"No such member");
    }
    std::u16string typeName() const override { return u"HostCollection"; }
    PropertiesRef own;
};

TEST(Tag, TakesTheHostsCollection) {
    TagTest on;
    const auto host = std::make_shared<HostCollection>();
    host->own = on.properties;
    on.set(u"a", u"1");
    const auto tag = std::make_shared<kvTag>(on.services);
    tag->Properties(Collection::fromObject(host));
    EXPECT_EQ(tag->Properties().object(), host);
    tag->Value(u"<KV:TAG>PROPERTY:a=:</KV><KV:TAG>SETPROPERTY:b=2:</KV><KV:TAG>PROPERTY:b=:</KV>");
    EXPECT_EQ(tag->Result(), u"12");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"b"), u"2");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"c", u"none"), u"none");
}

TEST(Tag, AnswersByName) {
    TagTest on;
    on.set(u"a", u"1");
    const auto tag = on.make(u"");
    automation::Object& late = *tag;
    Variant value[] = {Variant(u"<KV:TAG>PROPERTY:a=:</KV>")};
    late.invoke(u"value", InvokeKind::let, value);
    EXPECT_TRUE(late.invoke(u"RESULT", InvokeKind::get, {}).identical(Variant(u"1")));
    const ObjectRef tags = late.invoke(u"Tags", InvokeKind::get, {}).object();
    const ObjectRef steps = tags->invoke(u"NewEnum", InvokeKind::get, {}).object();
    EXPECT_EQ(steps->invoke(u"Next", InvokeKind::method, {}).object(), tag->Tags()->Item(1));
    EXPECT_EQ(steps->invoke(u"Next", InvokeKind::method, {}).object(), nullptr);
    Variant text[] = {Variant(u"{")};
    late.invoke(u"ProtectRTFCode", InvokeKind::method, text);
    EXPECT_TRUE(text[0].identical(Variant(u"\\{")));
    const ObjectRef library = late.invoke(u"Library", InvokeKind::get, {}).object();
    EXPECT_EQ(library->typeName(), u"kvLibrary");
    EXPECT_NE(library, tag->Library());
}

}  // namespace
}  // namespace velmor
