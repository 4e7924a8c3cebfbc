// The tag object: markup, state, what children share.

#include <gtest/gtest.h>

#include "core/TestTags.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;
using test::tagged;
using test::TagTest;

// clang-format off
TEST(Tag, FindsTopLevelTags) {
    const std::pair<const char16_t*, const char16_t*> cases[] = {  // the names, each after a blank
        {u"none", u""}, {u"<KV:A>X:</KV><KV:B>Y:</KV>", u" A>X: B>Y:"}, {u"<kv:A>X:</kv>", u" A>X:"},
        {u"<KV:A>X:<KV:B>Y:</KV>:</KV>", u" A>X:<KV:B>Y:</KV>:"}, {u"<KV:A>X</KV>", u" A>X:"}, {u"<KV:A>X:", u""},
        {u"<KV:A>X: <KV:B>Y:</KV>", u" B>Y:"},
        {u"<KV:<KV:B>Y:</KV>", u""},  // the search resumes 5 units after an unclosed marker
        {u"<KV:x<KV:B>Y:</KV>", u" B>Y:"}, {u"<KV:</KV>", u" :"}, {u"</KV><KV:A>X:</KV>", u" A>X:"},
        {u"<KV:<KV:<KV:</KV><KV:", u" :"}};
    TagTest on;
    for (const auto& [text, names] : cases) {
        const auto tags = on.make(text)->Tags();
        std::u16string found;
        for (std::int32_t i = 1; i <= tags->Count(); ++i) found += u" " + tags->Item(i)->Name();
        EXPECT_EQ(found, names);
    }
}
// clang-format on

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
    tag.Name(tagged(u"TAG>INCLUDE=[@VERSION:].kvl:"));
    EXPECT_EQ(tag.CommandValueProcessed(), u"1.kvl");
    tag.Name(u"TAG");
    EXPECT_EQ(tag.CommandName(), u"");
    EXPECT_TRUE(tag.CommandValue().identical(Variant(u"")));
}

TEST(Tag, RtfTurnsProtectionOnForGood) {
    TagTest on;
    EXPECT_FALSE(on.make(u"{\\RTF1 }")->ProtectRTF());
    const auto tag = on.make(u"{\\rtf1 }");
    tag->Value(u"plain");
    EXPECT_TRUE(tag->ProtectRTF());
}

TEST(Tag, EscapesResultsInRtf) {
    TagTest on;
    on.set(u"a", u"a{b}c\\d\r\ne");
    on.set(u"rtf", u"{\\rtf1 [PROPERTY:b=:]}");
    on.set(u"b", u"}");
    EXPECT_EQ(on.evaluate(u"{\\rtf1 [PROPERTY:a=:]}"), u"{\\rtf1 a\\{b\\}c\\\\d\\par e}");
    EXPECT_EQ(on.evaluate(u"[PROPERTY:a=:]"), u"a{b}c\\d\r\ne");
    // In a plain template the tags of a document are escaped, those outside it are not.
    EXPECT_EQ(on.evaluate(u"[PROPERTY:rtf=:] [PROPERTY:b=:]"), u"{\\rtf1 \\}} }");
    EXPECT_TRUE(on.last->Tags()->Item(1)->ProtectRTF());
    EXPECT_FALSE(on.last->Tags()->Item(2)->ProtectRTF());
}

TEST(Tag, EvaluatesOnceForEachValue) {
    TagTest on;
    on.set(u"a", u"1");
    EXPECT_EQ(on.evaluate(u"[PROPERTY:a=:]"), u"1");
    on.set(u"a", u"2");
    EXPECT_EQ(on.last->Result(), u"1");
    EXPECT_EQ(on.last->Tags()->Item(1)->Result(), u"1");
    on.last->Value(tagged(u"[PROPERTY:a=:]"));
    EXPECT_EQ(on.last->Result(), u"2");
    on.last->Name(u"TAG>PROPERTY:a=:");
    on.set(u"a", u"3");
    EXPECT_EQ(on.last->Result(), u"3");
}

TEST(Tag, TagsShowTheirResults) {
    TagTest on;
    on.set(u"a", u"[PROPERTY:b=:]+[PROPERTY:c=none:]");
    on.set(u"b", u"B");
    for (const bool askedBefore : {true, false}) {
        const auto tag = on.make(u"x[PROPERTY:b=:]y[PROPERTY:a=:]z");
        const auto early = askedBefore ? tag->Tags()->Item(2) : nullptr;
        EXPECT_TRUE(!early || early->Value().empty());
        EXPECT_EQ(tag->Result(), u"xByB+nonez");
        const auto item = tag->Tags()->Item(2);
        EXPECT_TRUE(!early || early == item);
        EXPECT_TRUE(item->isChild());
        EXPECT_EQ(item->Value(), tagged(u"[PROPERTY:b=:]+[PROPERTY:c=none:]"));
        EXPECT_EQ(item->Result(), u"B+none");
        EXPECT_EQ(item->Tags()->Item(2)->Result(), u"none");
        EXPECT_EQ(item->Tags()->Item(1)->Name(), u"TAG>PROPERTY:b=:");
        for (const Variant& none : {Variant(3), Variant(0), Variant(u"1")}) EXPECT_EQ(tag->Tags()->Item(none), nullptr);
        EXPECT_EQ(tag->Tags()->Item(Variant(1.0))->Result(), u"B");
    }
}

TEST(Tag, TagsShowTheTagsOfTheirText) {
    TagTest on;
    on.addHandler(u"H", 3, [](kvTag&) { return Variant(u"h"); });
    const auto tag = on.make(u"-[PROPERTY:a=[PROPERTY:b=[PROPERTY:c=<KV:H>:</KV>:]:]:]");
    EXPECT_EQ(tag->Result(), u"-h");
    std::shared_ptr<kvTag> child = tag->Tags()->Item(1);
    for (const auto* value :
         {u"[PROPERTY:b=[PROPERTY:c=<KV:H>:</KV>:]:]", u"[PROPERTY:c=<KV:H>:</KV>:]", u"<KV:H>:</KV>", u"h"}) {
        EXPECT_EQ(child->Value(), tagged(value));
        EXPECT_EQ(child->Result(), u"h");
        if (value[0] != u'h') child = child->Tags()->Item(1);
    }
}

// A tag that a caller evaluated first keeps its result; a skipped one is not evaluated.
TEST(Tag, TagsThatChangePlaces) {
    TagTest on;
    on.set(u"a", u"1");
    const auto tag = on.make(u"[PROPERTY:a=:]");
    EXPECT_EQ(tag->Tags()->Item(1)->Result(), u"1");
    on.set(u"a", u"2");
    EXPECT_EQ(tag->Result(), u"1");
    // The first replaces the place within the second, whose text is then absent.
    EXPECT_EQ(on.evaluate(u"[PROPERTY:a]<KV:X>b=[PROPERTY:a:]:</KV>"), u"<KV:TAG>PROPERTY:a</KV><KV:X>b=2:</KV>");
    EXPECT_EQ(on.last->Tags()->Item(1)->Result(), u"2");
    EXPECT_EQ(on.last->Tags()->Item(2)->Value(), u"");
}

TEST(Tag, ChildrenShareWhatTheParentHadWhenItsValueWasSet) {
    TagTest on;
    const auto tag = on.make(u"[PROPERTY:a=none:]");
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
    on.set(u"n", u"[PROPERTY:m=:]!");
    on.set(u"m", u"deep");
    on.set(u"low", u"<kv:TAG>PROPERTY:m=:</kv>");
    const auto tag = on.make(u"");
    EXPECT_EQ(tag->ProcessValue(tagged(u"[PROPERTY:n=:]?")), u"deep!?");
    EXPECT_EQ(tag->ProcessName(u"TAG>PROPERTY:n=:"), u"deep!");
    EXPECT_EQ(tag->ProcessName(u"no handler"), u"");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"N"), u"deep!");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"low"), u"<kv:TAG>PROPERTY:m=:</kv>");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"none", tagged(u"[@VERSION:]")), u"1");
    EXPECT_EQ(tag->GetProcessedVariablesValue(u"none", u"default"), u"default");
    tag->Name(tagged(u"X>Y:p=[PROPERTY:m=:]:"));
    EXPECT_EQ(tag->GetProcessedElementsValue(u"P"), u"deep");
    EXPECT_EQ(tag->GetProcessedElementsValue(u"q", Variant(std::int32_t{7})), u"7");
}

TEST(Tag, DisposeReleasesAndKeepsTheResult) {
    TagTest on;
    on.set(u"a", u"1");
    on.evaluate(u"{\\rtf1 [PROPERTY:a=:]}");
    const auto tags = on.last->Tags();
    const auto child = tags->Item(1);
    on.last->Dispose(false);
    EXPECT_EQ(on.last->Tags(), nullptr);
    EXPECT_EQ(tags->Count(), 0);
    EXPECT_TRUE(child->ProtectRTF());
    EXPECT_NE(child->Properties().object(), on.properties);
    EXPECT_NE(on.last->Properties().object(), on.properties);
    EXPECT_EQ(on.last->Result(), u"{\\rtf1 1}");
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

// A host's replacement of our collection: it has three members.
class HostCollection final : public automation::Object {
public:
    explicit HostCollection(PropertiesRef own) : own_(std::move(own)) {}
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        if (name != u"GetValue" && name != u"Item" && name != u"Add") throw Error(438, u"Host", u"No such member");
        return own_->invoke(name, kind, arguments);
    }
    std::u16string typeName() const override { return u"HostCollection"; }

private:
    PropertiesRef own_;
};

TEST(Tag, AcceptsTheHostsCollection) {
    TagTest on;
    const auto host = std::make_shared<HostCollection>(on.properties);
    on.set(u"a", u"1");
    const auto tag = std::make_shared<kvTag>(on.services);
    tag->Properties(Collection(host));
    EXPECT_EQ(tag->Properties().object(), host);
    tag->Value(tagged(u"[PROPERTY:a=:][SETPROPERTY:b=2:][PROPERTY:b=:]"));
    EXPECT_EQ(tag->Result(), u"12");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"b"), u"2");
    EXPECT_EQ(tag->GetProcessedPropertiesValue(u"c", u"none"), u"none");
}

TEST(Tag, AnswersByName) {
    TagTest on;
    on.set(u"a", u"1");
    const auto tag = on.make(u"");
    automation::Object& late = *tag;
    Variant value[] = {Variant(tagged(u"[PROPERTY:a=:]"))};
    late.invoke(u"value", InvokeKind::let, value);
    EXPECT_TRUE(late.invoke(u"RESULT", InvokeKind::get, {}).identical(Variant(u"1")));
    const ObjectRef tags = late.invoke(u"Tags", InvokeKind::get, {}).object();
    const ObjectRef steps = tags->invoke(u"NewEnum", InvokeKind::get, {}).object();
    EXPECT_EQ(steps->invoke(u"Next", InvokeKind::method, {}).object(), tag->Tags()->Item(1));
    EXPECT_EQ(steps->invoke(u"Next", InvokeKind::method, {}).object(), nullptr);
    Variant text[] = {Variant(u"{")};
    late.invoke(u"ProtectRTFCode", InvokeKind::method, text);
    EXPECT_TRUE(text[0].identical(Variant(u"\\{")));
    EXPECT_EQ(late.invoke(u"Library", InvokeKind::get, {}).object()->typeName(), u"kvLibrary");
}

}  // namespace
}  // namespace velmor
