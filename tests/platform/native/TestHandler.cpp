// A library of handlers that shows what the C interface carries.

#include <velmor/handler.h>

#include <stdexcept>

namespace {

using namespace velmor::handler;

std::u16string typeOf(const Value& value) {
    if (value.get<std::u16string>()) return u"text";
    if (value.get<double>()) return u"number";
    if (value.get<Date>()) return u"date";
    if (value.get<bool>()) return u"truth";
    return value.get<Object>() ? u"object" : u"nothing";
}

std::u16string types(const Tag& tag) {
    std::u16string text;
    for (const auto* name : {u"Text", u"Amount", u"Day", u"Sure", u"Deep", u"Absent"}) {
        const Value value = tag.property(name);
        text += typeOf(value) + u' ';
        if (!value.get<Object>()) text += tag.object().text(value) + u',';
    }
    return text;
}

std::u16string changes(const Tag& tag) {
    tag.setProperty(u"Amount", tag.object().number(tag.property(u"Amount")) + 1);
    tag.setProperty(u"Day", Date{tag.object().date(tag.property(u"Day")).days + 1});
    tag.setProperty(u"Sure", false);
    tag.setProperty(u"Text", tag.property(u"Deep"));
    tag.object().let(u"ProtectRTF", true);
    tag.logError(u"logged");
    return types(tag) + (tag.isForRtf() ? u"rtf" : u"text");
}

std::u16string answer(const Tag& tag) {
    const std::u16string command = tag.command();
    if (command == u"TYPES") return types(tag);
    if (command == u"CHANGES") return changes(tag);
    if (command == u"FAILS") throw Failure(1234, u"on purpose");
    if (command == u"THROWS") throw std::runtime_error("thrown inside");
    if (command == u"ODD") throw 1;
    if (command == u"MEMBER") tag.object().get(u"NoSuchMember");
    if (command == u"CONVERT") tag.object().date(u"never");
    return command + u'|' + tag.commandValue() + u'|' + tag.parameter(u"A") + u'|' + tag.parameter(u"B", u"none") +
           u'|' + tag.evaluate(u"<KV:TAG>PROPERTY:Text=:</KV>");
}

constexpr Class tested{.name = u"Test.Handler",
                       .identifier = u"{5B47B6F0-8C5C-4AF2-9D43-6B6B6B0E6F11}",
                       .description = u"A handler of the tests",
                       .handler = u"",
                       .commands = {},
                       .answer = &answer};

}  // namespace

VELMOR_HANDLERS(tested)
