// The catalogue of handlers, called by name: registered handlers and their descriptions.

#include <gtest/gtest.h>

#include "handlers/ITag4.h"
#include "handlers/kvTagInfo.h"
#include "properties/Describe.h"
#include "text/Error.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

// Returns the member and its arguments as text; the command ERRS raises an error.
class TalkingHandler final : public automation::Object {
public:
    explicit TalkingHandler(std::int32_t level, std::u16string type = u"H") : level_(level), type_(std::move(type)) {}
    Variant invoke(std::u16string_view name, InvokeKind, std::span<Variant> arguments) override {
        if (name == u"Interface") return level_;
        std::string text = toUtf8(name);
        for (const Variant& argument : arguments) text += "|" + describe(argument);
        if (text.find("ERRS") != text.npos) throw Error(5, u"Test", u"refused");
        if (text.find("NULL") != text.npos) return automation::Null();
        return fromUtf8(text);
    }
    std::u16string typeName() const override { return type_; }

private:
    std::int32_t level_;
    std::u16string type_;
};

class TagInfo : public testing::Test {
protected:
    void add(std::u16string_view key, std::u16string_view name, std::u16string_view className) {
        services.registry.set(key, name, className);
        const std::int32_t level = className.back() - u'0';
        services.objects.add(className, [level] { return std::make_shared<TalkingHandler>(level); });
    }
    void hide(const std::u16string& key, std::u16string_view value) { services.registry.set(key, u"Hide", value); }
    // A collection as its entries, any other value as its text.
    std::string ask(std::u16string_view member, std::vector<Variant> arguments = {}) {
        const Variant answer = info.invoke(member, InvokeKind::method, arguments);
        if (const auto list = std::dynamic_pointer_cast<privProperties>(answer.object())) return describe(*list);
        return toUtf8(*automation::toText(answer));
    }

    const std::u16string handlers{handlersKey}, groups{subHandlersKey};
    platform::MemoryServices services;
    kvTagInfo info{services};
};

TEST_F(TagInfo, KnowsTheBuiltInHandler) {
    const struct {
        const char16_t* member;
        std::vector<Variant> arguments;
        const char* answer;
    } cases[] = {
        {u"CommandList", {u"tag"}, "SETPROPERTY:INCLUDE:SETPATH:PROPERTY:"},
        {u"ParameterList", {u"TAG", u"setproperty:name=value"}, "PREPROCESS:"},
        {u"ParameterList", {u"TAG", u"INCLUDE=file"}, ""},
        {u"CommandSyntax", {u"TAG", u"setProperty"}, "TAG>SETPROPERTY:name=value:[PREPROCESS=(true):]"},
        {u"CommandSyntax", {u"TAG", u"INCLUDE=a:"}, "TAG>INCLUDE=[path\\]includefile:"},
        {u"CommandSyntax", {u"TAG", u"SETPATH"}, "TAG>SETPATH=path:"},
        {u"CommandSyntax", {u"TAG", u"PROPERTY"}, "TAG>PROPERTY:name=default:"},
        {u"CommandSyntax", {u"TAG", u"PRIVVAR"}, ""},
        {u"CommandDescription", {u"TAG", u"INCLUDE"}, ""},
        {u"ParameterValueList", {u"TAG", u"SETPROPERTY", u"PREPROCESS"}, ""},
    };
    for (const auto& one : cases) EXPECT_EQ(ask(one.member, one.arguments), one.answer) << &one - cases;
    EXPECT_EQ(services.registry.reads, 0u);
}

TEST_F(TagInfo, CallsHandlersByTheirLevel) {
    const ObjectRef database = std::make_shared<TalkingHandler>(0, u"kvDatabase");
    info.Database(database);
    for (const ObjectRef& other : {ObjectRef(), ObjectRef(std::make_shared<TalkingHandler>(0, u"Recordset"))}) {
        try {
            Variant value[] = {Variant(other)};
            info.invoke(u"Database", InvokeKind::set, value);
            ADD_FAILURE() << "taken";
        } catch (const Error& error) {
            EXPECT_EQ(toUtf8(error.description()) + std::to_string(error.number()), "Type Mismatch13");
        }
    }
    const std::string lists[] = {"", "|String H", "|String H", "|String H|kvDatabase", "|String H|kvDatabase"};
    for (int level = 1; level <= 5; ++level) {
        add(handlers, u"H", u"Test.H" + std::u16string(1, static_cast<char16_t>(u'0' + level)));
        const auto said = [&](std::string text) { return level > 1 ? text + lists[level - 1] : ""; };
        EXPECT_EQ(ask(u"CommandList", {u"h"}), said("CommandList"));
        EXPECT_EQ(ask(u"ParameterList", {u"H"}), said("ParameterList|String "));
        EXPECT_EQ(ask(u"ParameterList", {u"H", u"c=1:x"}), said("ParameterList|String C"));
        EXPECT_EQ(ask(u"CommandSyntax", {u"H", u"c:x=1"}), said("SyntaxString|String C"));
        EXPECT_EQ(ask(u"CommandDescription", {u"H", u"c"}), said("CommandDescription|String C"));
        EXPECT_EQ(ask(u"ParameterValueList", {u"H", u"c=1", u"p"}),
                  level > 3 ? said("ParameterValueList|String C|String p") : "");
        for (const auto* refused : {u"errs", u"null"}) EXPECT_EQ(ask(u"CommandSyntax", {u"H", refused}), "");
    }
}

TEST_F(TagInfo, ReportsRegisteredAndAvailableHandlers) {
    add(handlers, u"H", u"Test.H4");
    for (const auto* name : {u"S", u"S-1", u"TAG"}) add(groups + u"\\LETTERS", name, u"Test.S3");
    services.registry.set(handlers, u"GONE", u"Test.Gone");
    services.registry.set(handlers, u"EMPTY", u"");
    add(handlers, u"BRACED", u"{00020905-0000-0000-C000-000000000046}");
    add(handlers, u"MONIKER", u"script:http://example.org/x.sct");
    const struct {
        const char16_t* name;
        const char *registered, *available, *commands;
    } cases[] = {
        {u"h", "True", "True", "CommandList|String H|Nothing"},
        {u"H>COMMAND:a-b=1:", "True", "True", "CommandList|String H|Nothing"},
        {u"letters-S>X", "True", "True", "CommandList|String S"},
        {u"letters-S-1", "True", "True", "CommandList|String S-1"},
        {u"letters-TAG", "False", "False", ""},
        {u"TAG", "False", "False", "SETPROPERTY:INCLUDE:SETPATH:PROPERTY:"},
        {u"gone", "True", "False", ""},
        {u"BRACED", "True", "False", ""},
        {u"MONIKER", "True", "False", ""},
        {u"EMPTY", "False", "False", ""},
        {u"S", "False", "False", ""},
        {u"LETTERS", "False", "False", ""},
        {u"", "False", "False", ""},
        {u"-", "False", "False", ""},
        {u"-H", "False", "False", ""},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(ask(u"tagregistered", {one.name}), one.registered) << &one - cases;
        EXPECT_EQ(ask(u"TAGAVAILABLE", {one.name}), one.available) << &one - cases;
        EXPECT_EQ(ask(u"CommandList", {one.name}), one.commands) << &one - cases;
    }
}

TEST_F(TagInfo, ListsHandlers) {
    EXPECT_EQ(ask(u"HandlerList2", {u"", true, true}), "TAG=String ");  // with an empty registry
    for (const auto* name : {u"B", u"A", u"Hid", u""}) services.registry.set(handlers, name, u"x");
    services.registry.set(groups + u"\\LETTERS", u"S", u"y");
    services.registry.set(groups + u"\\LETTERS", u"Quiet", u"z");
    services.registry.addKey(groups + u"\\REPORTS");
    hide(handlers + u"\\hid", u"1");
    hide(handlers + u"\\A", u"0");
    hide(groups + u"\\letters\\Quiet", u"yes");
    const Variant none = Variant::missing();
    EXPECT_EQ(ask(u"TagRegistered", {u""}), "False");
    EXPECT_EQ(ask(u"HandlerListString"), "B:A:Hid:TAG:");
    EXPECT_EQ(ask(u"HandlerListFilteredString"), "B:A:TAG:");
    EXPECT_EQ(ask(u"HandlerListString2"), "B:A:TAG:");
    EXPECT_EQ(ask(u"HandlerListString2", {u"letters"}), "S:");
    EXPECT_EQ(ask(u"HandlerListString2", {u"LETTERS", false}), "S:Quiet:");
    EXPECT_EQ(ask(u"HandlerListString2", {u"NONE"}), "");
    EXPECT_EQ(ask(u"HandlerList"), "B=String x | A=String x | Hid=String x | TAG=String ");
    for (const auto* filtered : {u"HandlerListFiltered", u"HandlerList2"}) {
        EXPECT_EQ(ask(filtered), "B=String x | A=String x | TAG=String ");
    }
    EXPECT_EQ(ask(u"HandlerList2", {none, none, true}),
              "B=String x | A=String x | LETTERS=String  | REPORTS=String  | TAG=String ");
    hide(handlers + u"\\TAG", u"1");
    services.registry.set(handlers, u"tag", u"Never.Asked");
    EXPECT_EQ(ask(u"HandlerListFilteredString"), "B:A:");
    EXPECT_EQ(ask(u"HandlerList"), "B=String x | A=String x | Hid=String x | tag=String ");
}

TEST_F(TagInfo, AcceptsAnyRegistry) {
    const std::u16string huge(64'000, u'N'), lines = u"CR\r\nLF";
    services.registry.set(handlers, huge, u"");
    services.registry.set(handlers, lines, std::u16string(64'000, u'c'));
    EXPECT_EQ(ask(u"HandlerListString"), std::string(64'000, 'N') + ":CR\r\nLF:TAG:");
    EXPECT_EQ(ask(u"TagRegistered", {lines}) + ask(u"TagAvailable", {lines}) + ask(u"TagRegistered", {huge}),
              "TrueFalseFalse");
    EXPECT_EQ(ask(u"CommandList", {huge}) + ask(u"CommandSyntax", {lines, huge}), "");
}

}  // namespace
}  // namespace velmor
