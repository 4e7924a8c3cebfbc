#include "Handlers.h"

#include <array>
#include <initializer_list>
#include <memory>
#include <vector>

#include "Journal.h"
#include "automation/Convert.h"
#include "automation/DispatchTable.h"
#include "text/Error.h"

namespace testhandlers {

using namespace velmor::automation;

namespace {

using Values = std::initializer_list<Variant>;

Variant call(const ObjectRef& object, std::u16string_view name, InvokeKind kind, Values arguments = {}) {
    std::vector<Variant> values(arguments);
    return object->invoke(name, kind, values);
}

Variant ask(const ObjectRef& object, std::u16string_view name, Values arguments = {}) {
    return call(object, name, InvokeKind::get, arguments);
}

std::u16string askText(const ObjectRef& object, std::u16string_view name, Values arguments = {}) {
    return toText(ask(object, name, arguments)).value_or(u"?");
}

std::u16string command(const ObjectRef& tag) {
    return askText(tag, u"CommandName");
}

constexpr std::int32_t failsInDispose = -5;

const DispatchTable<Handler> members({
    {u"Interface", MemberKind::get, 0, 0, [](Handler& self, Arguments&) { return Variant(self.level()); }},
    {u"GetTagValue", MemberKind::method, 1, 1,
     [](Handler& self, Arguments& args) { return Variant(self.GetTagValue(args.object(0))); }},
    {u"Dispose", MemberKind::method, 0, 0,
     [](Handler& self, Arguments&) {
         self.Dispose();
         return Variant();
     }},
});

}  // namespace

Variant Handler::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    return members.invoke(*this, name, kind, arguments);
}

std::int32_t Handler::level() const {
    note(u"Interface");
    return level_ == failsInDispose ? 5 : level_;
}

std::u16string Handler::GetTagValue(const ObjectRef& tag) const {
    note(u"GetTagValue");
    return answer_(tag);
}

void Handler::Dispose() const {
    note(u"Dispose");
    if (level_ == failsInDispose) throw velmor::Error(77, u"VelmorTest", u"Dispose fails on purpose");
}

template <std::int32_t level>
ObjectRef makeLevel() {
    return std::make_shared<Handler>(level, [](const ObjectRef& tag) {
        return u"L" + std::u16string(1, static_cast<char16_t>(u'0' + level)) + u"[" + command(tag) + u"]";
    });
}
template ObjectRef makeLevel<0>();
template ObjectRef makeLevel<1>();
template ObjectRef makeLevel<2>();
template ObjectRef makeLevel<3>();
template ObjectRef makeLevel<4>();
template ObjectRef makeLevel<5>();

ObjectRef makeFailing() {
    return std::make_shared<Handler>(5, [](const ObjectRef&) -> std::u16string {
        throw velmor::Error(1234, u"VelmorTest", u"GetTagValue fails on purpose");
    });
}

ObjectRef makeFailingDispose() {
    return std::make_shared<Handler>(failsInDispose, [](const ObjectRef&) { return std::u16string(u"kept"); });
}

ObjectRef makeReentrant() {
    return std::make_shared<Handler>(5, [](const ObjectRef& tag) {
        std::u16string seen = u"(" + askText(tag, u"Result") + u")";
        call(tag, u"Value", InvokeKind::let, {Variant(u"<KV:REENTRANT>AGAIN:</KV>")});
        seen += askText(tag, u"Result");
        call(tag, u"Name", InvokeKind::let, {Variant(u"REENTRANT>AGAIN:")});
        call(tag, u"Dispose", InvokeKind::method);
        return u"reentrant" + seen;
    });
}

ObjectRef makeProbe() {
    return std::make_shared<Handler>(4, [](const ObjectRef& tag) {
        std::array<Variant, 1> plain{Variant(u"a{b")};
        tag->invoke(u"ProtectRTFCode", InvokeKind::method, plain);
        const ObjectRef database = ask(tag, u"Database").object();
        std::u16string seen = tag->typeName() + u"|" + askText(tag, u"HandlerName") + u"|" + command(tag) + u"|" +
                              askText(tag, u"CommandValue") + u"|" + askText(tag, u"CommandValueProcessed") + u"|" +
                              askText(ask(tag, u"Elements").object(), u"Count") + u"|" +
                              askText(tag, u"GetProcessedElementsValue", {Variant(u"x")}) + u"|" +
                              toText(plain[0]).value_or(u"?") + u"|" +
                              (database ? askText(database, u"Name") : u"no database") + u"|" +
                              askText(tag, u"ProcessName", {Variant(u"TAG>PROPERTY:p=none:")});
        call(tag, u"LogError", InvokeKind::method, {Variant(u"PROBE"), Variant(u"noted")});
        return seen;
    });
}

ObjectRef makeNesting() {
    return std::make_shared<Handler>(
        3, [](const ObjectRef&) { return std::u16string(u"<<KV:TAG>PROPERTY:p=none:</KV>>"); });
}

ObjectRef makeEcho() {
    return std::make_shared<Handler>(5, [](const ObjectRef&) { return std::u16string(u"<<KV:ECHO>X:</KV>>"); });
}

ObjectRef makeDigging() {
    return std::make_shared<Handler>(
        5, [](const ObjectRef& tag) { return u"+" + askText(tag, u"ProcessName", {Variant(u"DIGGING>X:")}); });
}

ObjectRef makeRtf() {
    return std::make_shared<Handler>(3, [](const ObjectRef&) { return std::u16string(u"{\\rtf1 bold}"); });
}

}  // namespace testhandlers
