// The catalogue of handlers: what is registered, and what handlers say of their commands.

#include <gtest/gtest.h>

#include "automation/Convert.h"
#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

class HostDatabase final : public automation::Object {
public:
    explicit HostDatabase(std::u16string typeName) : typeName_(std::move(typeName)) {}
    Variant invoke(std::u16string_view, InvokeKind, std::span<Variant>) override { return {}; }
    std::u16string typeName() const override { return typeName_; }

private:
    std::u16string typeName_;
};

// Answers a question with the member and its arguments as text; the name ERRS raises instead.
class TalkingHandler final : public automation::Object {
public:
    explicit TalkingHandler(std::int32_t level) : level_(level) {}

    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        if (name == u"Interface") return level_;
        std::u16string text(name);
        for (const Variant& argument : arguments) {
            text += u'|';
            text += argument.isObject() ? automation::typeNameOf(argument) : *automation::toText(argument);
        }
        if (text.find(u"ERRS") != std::u16string::npos) throw Error(5, u"Test", u"refused");
        if (text.find(u"NULL") != std::u16string::npos) return automation::Null();
        return text;
    }
    std::u16string typeName() const override { return u"TalkingHandler"; }

private:
    std::int32_t level_;
};

class TagInfo : public testing::Test {
protected:
    void add(std::u16string_view key, std::u16string_view name, std::int32_t level) {
        const std::u16string className = std::u16string(u"Test.").append(name);
        services.registry.set(key, name, className);
        services.objects.add(className, [level] { return std::make_shared<TalkingHandler>(level); });
    }
    void hide(std::u16string_view key, std::u16string_view name, std::u16string_view value) {
        services.registry.set(std::u16string(key) + u'\\' + std::u16string(name), u"Hide", value);
    }
    std::u16string names(const PropertiesRef& list) {
        std::u16string text;
        for (std::int32_t i = 1; i <= list->Count(); ++i) {
            text += std::u16string(list->Item(i)->Name()) + u'=' + list->Item(i)->ValueStr() + u' ';
        }
        return text;
    }

    const std::u16string handlers{kHandlersKey};
    const std::u16string letters = std::u16string(kSubHandlersKey) + u"\\LETTERS";
    platform::MemoryServices services;
    kvTagInfo info{services};
};

TEST_F(TagInfo, KnowsTheBuiltInHandler) {
    EXPECT_EQ(info.CommandList(u"tag"), u"SETPROPERTY:INCLUDE:SETPATH:PROPERTY:");
    EXPECT_EQ(info.ParameterList(u"TAG", u"setproperty:name=value"), u"PREPROCESS:");
    EXPECT_EQ(info.ParameterList(u"TAG", u"INCLUDE=file"), u"");
    EXPECT_EQ(info.CommandSyntax(u"TAG", u"setProperty"), u"TAG>SETPROPERTY:name=value:[PREPROCESS=(true):]");
    EXPECT_EQ(info.CommandSyntax(u"TAG", u"INCLUDE=file"), u"TAG>INCLUDE=[path\\]includefile:");
    EXPECT_EQ(info.CommandSyntax(u"TAG", u"SETPATH"), u"TAG>SETPATH=path:");
    EXPECT_EQ(info.CommandSyntax(u"TAG", u"PROPERTY"), u"TAG>PROPERTY:name=default:");
    EXPECT_EQ(info.CommandSyntax(u"TAG", u"PRIVVAR"), u"");
    EXPECT_EQ(info.CommandDescription(u"TAG", u"INCLUDE"), u"");
    EXPECT_EQ(info.ParameterValueList(u"TAG", u"SETPROPERTY", u"PREPROCESS"), u"");
    EXPECT_EQ(services.registry.reads, 0u);
}

TEST_F(TagInfo, AsksHandlersAsTheirLevelAllows) {
    const struct {
        std::int32_t level;
        std::u16string commands, parameters, syntax, description, values;
    } cases[] = {
        {1, u"", u"", u"", u"", u""},
        {2, u"CommandList|H", u"ParameterList|C|H", u"SyntaxString|C|H", u"CommandDescription|C|H", u""},
        {4, u"CommandList|H|kvDatabase", u"ParameterList|C|H|kvDatabase", u"SyntaxString|C|H|kvDatabase",
         u"CommandDescription|C|H|kvDatabase", u"ParameterValueList|C|p|H|kvDatabase"},
    };
    info.Database(std::make_shared<HostDatabase>(u"kvDatabase"));
    for (const auto& one : cases) {
        add(handlers, u"H", one.level);
        EXPECT_EQ(info.CommandList(u"h"), one.commands) << one.level;
        EXPECT_EQ(info.ParameterList(u"H", u"c=1:x"), one.parameters) << one.level;
        EXPECT_EQ(info.CommandSyntax(u"H", u"c:x=1"), one.syntax) << one.level;
        EXPECT_EQ(info.CommandDescription(u"H", u"c"), one.description) << one.level;
        EXPECT_EQ(info.ParameterValueList(u"H", u"c=1", u"p"), one.values) << one.level;
    }
    // A sub-handler is told its name without the group.
    add(letters, u"S", 3);
    EXPECT_EQ(info.CommandList(u"Letters-s"), u"CommandList|S");
    EXPECT_EQ(info.CommandList(u"S"), u"");
}

TEST_F(TagInfo, TellsWhatIsRegisteredAndAvailable) {
    add(handlers, u"H", 3);
    add(letters, u"S", 3);
    services.registry.set(handlers, u"GONE", u"Test.Gone");
    services.registry.set(handlers, u"EMPTY", u"");
    const auto refuse = [&](std::u16string_view name, std::u16string_view className) {
        services.registry.set(handlers, name, className);
        services.objects.add(className, [] { return std::make_shared<TalkingHandler>(5); });
    };
    refuse(u"BRACED", u"{00020905-0000-0000-C000-000000000046}");
    refuse(u"MONIKER", u"script:http://example.org/x.sct");
    const struct {
        const char16_t* name;
        bool registered, available;
    } cases[] = {
        {u"h", true, true},      {u"H>COMMAND:a-b=1:", true, true},
        {u"gone", true, false},  {u"EMPTY", false, false},
        {u"NONE", false, false}, {u"letters-S>X", true, true},
        {u"S", false, false},    {u"LETTERS", false, false},
        {u"", false, false},     {u"TAG", false, false},
        {u"-", false, false},    {u"BRACED", true, false},
        {u"-H", false, false},   {u"MONIKER", true, false},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(info.TagRegistered(one.name), one.registered) << testing::PrintToString(one.name);
        EXPECT_EQ(info.TagAvailable(one.name), one.available) << testing::PrintToString(one.name);
        EXPECT_EQ(info.CommandList(one.name).empty(), !one.available && one.name != std::u16string(u"TAG"));
    }
}

TEST_F(TagInfo, ListsHandlers) {
    for (const auto* name : {u"B", u"A", u"Hidden"})
        services.registry.set(handlers, name, u"Test." + std::u16string(name));
    hide(handlers, u"hidden", u"1");
    hide(handlers, u"A", u"0");
    services.registry.set(letters, u"S", u"Test.S");
    services.registry.set(letters, u"Quiet", u"Test.Q");
    hide(letters, u"Quiet", u"yes");
    services.registry.addKey(std::u16string(kSubHandlersKey) + u"\\REPORTS");

    EXPECT_EQ(info.HandlerListString(), u"B:A:Hidden:TAG:");
    EXPECT_EQ(info.HandlerListFilteredString(), u"B:A:TAG:");
    EXPECT_EQ(info.HandlerListString2(u"letters"), u"S:");
    EXPECT_EQ(info.HandlerListString2(u"LETTERS", false), u"S:Quiet:");
    EXPECT_EQ(info.HandlerListString2(u"NONE"), u"");
    EXPECT_EQ(names(info.HandlerList()), u"B=Test.B A=Test.A Hidden=Test.Hidden TAG= ");
    EXPECT_EQ(names(info.HandlerListFiltered()), u"B=Test.B A=Test.A TAG= ");
    EXPECT_EQ(names(info.HandlerList2({}, true, true)), u"B=Test.B A=Test.A LETTERS= REPORTS= TAG= ");
    hide(handlers, u"TAG", u"1");
    EXPECT_EQ(info.HandlerListFilteredString(), u"B:A:");
}

TEST_F(TagInfo, StandsAnyRegistry) {
    EXPECT_EQ(info.HandlerListString(), u"TAG:");
    EXPECT_EQ(names(info.HandlerList2({}, true, true)), u"TAG= ");

    const std::u16string huge(64'000, u'N');
    const std::u16string lines = u"CR\r\nLF";
    services.registry.set(handlers, u"", u"Test.Default");
    services.registry.set(handlers, huge, u"");
    services.registry.set(handlers, lines, std::u16string(64'000, u'c'));
    services.registry.set(handlers, u"tag", u"Test.NeverAsked");
    EXPECT_EQ(info.HandlerListString(), huge + u":CR\r\nLF:tag:");
    EXPECT_EQ(info.HandlerList()->GetValueStr(u"TAG", u"missing"), u"");
    EXPECT_TRUE(info.TagRegistered(lines));
    EXPECT_FALSE(info.TagAvailable(lines));
    EXPECT_FALSE(info.TagRegistered(huge));
    EXPECT_EQ(info.CommandList(huge), u"");
    EXPECT_EQ(info.CommandSyntax(lines, huge), u"");
}

TEST_F(TagInfo, SwallowsWhatHandlersRaise) {
    add(handlers, u"H", 5);
    EXPECT_EQ(info.CommandSyntax(u"H", u"errs"), u"");
    EXPECT_EQ(info.CommandSyntax(u"H", u"null"), u"");
    EXPECT_EQ(info.CommandSyntax(u"H", u"fine"), u"SyntaxString|FINE|H|Nothing");
}

TEST_F(TagInfo, TakesOnlyTheDatabaseOfTheHost) {
    const ObjectRef database = std::make_shared<HostDatabase>(u"kvDatabase");
    info.Database(database);
    for (const ObjectRef& other : {ObjectRef(), ObjectRef(std::make_shared<HostDatabase>(u"Recordset"))}) {
        try {
            Variant value[] = {Variant(other)};
            info.invoke(u"Database", InvokeKind::set, value);
            ADD_FAILURE() << "taken";
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), 13);
            EXPECT_EQ(error.description(), u"Type Mismatch");
        }
    }
    EXPECT_EQ(info.Database(), database);
}

TEST_F(TagInfo, AnswersByName) {
    add(handlers, u"H", 4);
    const auto call = [&](std::u16string_view member, std::vector<Variant> arguments) {
        return *automation::toText(info.invoke(member, InvokeKind::method, arguments));
    };
    EXPECT_EQ(call(u"tagavailable", {u"H"}), u"True");
    EXPECT_EQ(call(u"TAGREGISTERED", {u"X"}), u"False");
    EXPECT_EQ(call(u"CommandList", {u"TAG"}), info.CommandList(u"TAG"));
    EXPECT_EQ(call(u"ParameterList", {u"H"}), u"ParameterList||H|Nothing");
    EXPECT_EQ(call(u"CommandSyntax", {u"H", u"c"}), u"SyntaxString|C|H|Nothing");
    EXPECT_EQ(call(u"CommandDescription", {u"H", u"c"}), u"CommandDescription|C|H|Nothing");
    EXPECT_EQ(call(u"ParameterValueList", {u"H", u"c", u"p"}), u"ParameterValueList|C|p|H|Nothing");
    EXPECT_EQ(call(u"HandlerListString2", {}), u"H:TAG:");
    EXPECT_EQ(call(u"HandlerListString2", {Variant::missing(), false}), u"H:TAG:");
    for (const auto* member : {u"HandlerList", u"HandlerList2", u"HandlerListFiltered"}) {
        EXPECT_TRUE(std::dynamic_pointer_cast<privProperties>(info.invoke(member, InvokeKind::get, {}).object()));
    }
}

}  // namespace
}  // namespace velmor
