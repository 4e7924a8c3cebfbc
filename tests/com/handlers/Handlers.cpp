#include <memory>
#include <vector>

#include "Classes.h"
#include "automation/Convert.h"
#include "text/Error.h"

namespace testhandlers {

using namespace velmor::automation;
using Arguments = HostObject::Arguments;

namespace {

using Answer = std::u16string (*)(const ObjectRef& tag);

Variant ask(const ObjectRef& object, std::u16string_view name, std::vector<Variant> arguments = {},
            InvokeKind kind = InvokeKind::method) {
    return object->invoke(name, kind, arguments);
}

std::u16string askText(const ObjectRef& object, std::u16string_view name, std::vector<Variant> arguments = {}) {
    return toText(ask(object, name, std::move(arguments))).value_or(u"?");
}

std::shared_ptr<HostObject> handler(std::int32_t level, Answer answer) {
    const auto made = std::make_shared<HostObject>();
    made->with(u"Interface", [level](Arguments) { return note(u"Interface"), Variant(level); });
    made->with(u"GetTagValue", [answer](Arguments args) { return note(u"GetTagValue"), answer(args[0].object()); });
    made->with(u"Dispose", [](Arguments) { return note(u"Dispose"), Variant(); });
    return made;
}

}  // namespace

template <std::int32_t level>
ObjectRef makeLevel() {
    const auto made = handler(level, [](const ObjectRef& tag) {
        return u"L" + std::u16string(1, static_cast<char16_t>(u'0' + level)) + u"[" + askText(tag, u"CommandName") +
               u"]";
    });
    for (const std::u16string name :
         {u"CommandList", u"ParameterList", u"SyntaxString", u"CommandDescription", u"ParameterValueList"}) {
        made->with(name, [name](Arguments args) {
            std::u16string text = name;
            for (const Variant& arg : args) {
                const auto database = arg.isObject() ? arg.object() : nullptr;
                text += u" " + (database ? askText(database, u"Name") : toText(arg).value_or(u"Nothing"));
            }
            return Variant(text);
        });
    }
    return made;
}
template ObjectRef makeLevel<3>();
template ObjectRef makeLevel<4>();
template ObjectRef makeLevel<5>();

ObjectRef makeFailing() {
    return handler(5, [](const ObjectRef&) -> std::u16string {
        throw velmor::Error(1234, u"VelmorTest", u"GetTagValue fails on purpose");
    });
}

ObjectRef makeProbe() {
    return handler(4, [](const ObjectRef& tag) {
        Variant plain[] = {Variant(u"a{b")};
        tag->invoke(u"ProtectRTFCode", InvokeKind::method, plain);
        const ObjectRef database = ask(tag, u"Database").object();
        std::u16string seen =
            tag->typeName() + u" " + askText(tag, u"HandlerName") + u" " + askText(tag, u"CommandName") + u" " +
            askText(tag, u"CommandValue") + u" " + askText(tag, u"CommandValueProcessed") + u" " +
            askText(ask(tag, u"Elements").object(), u"Count") + u" " +
            askText(tag, u"GetProcessedElementsValue", {Variant(u"x")}) + u" " + toText(plain[0]).value_or(u"?") +
            u" " + askText(database, u"Name") + u" " + askText(tag, u"ProcessName", {Variant(u"TAG>PROPERTY:p=none:")});
        ask(tag, u"LogError", {Variant(u"PROBE"), Variant(u"noted")});
        return seen;
    });
}

ObjectRef makeDigging() {
    return handler(5,
                   [](const ObjectRef& tag) { return u"+" + askText(tag, u"ProcessName", {Variant(u"DIGGING>X:")}); });
}

ObjectRef makeActing() {
    return handler(5, [](const ObjectRef& tag) {
        ask(ask(ask(tag, u"Variables").object(), u"GetValueObject", {Variant(u"act")}).object(), u"Act",
            {Variant(tag)});
        return std::u16string(u"[acted]");
    });
}

}  // namespace testhandlers
