#include "CustomerTag.h"

#include "automation/DispatchTable.h"
#include "text/Error.h"

namespace sample {

using velmor::automation::Arguments;
using velmor::automation::InvokeKind;
using velmor::automation::MemberKind;
using velmor::automation::ObjectRef;
using velmor::automation::Variant;

namespace {

constexpr std::int32_t level = 5;

ObjectRef objectOf(const Variant& answer) {
    ObjectRef object = answer.object();
    if (!object) throw velmor::Error(13);
    return object;
}

// The command names a member of the customer.
Variant valueFor(const ObjectRef& tag) {
    const ObjectRef direct = objectOf(tag->invoke(u"Direct", InvokeKind::get, {}));
    Variant className[] = {Variant(u"Sample.Customer")};
    const ObjectRef customer = direct->invoke(u"GetObject", InvokeKind::method, className).object();
    if (!customer) throw velmor::Error(5, u"Sample.CustomerTag", u"There is no such customer");
    Variant command = tag->invoke(u"CommandName", InvokeKind::get, {});
    const std::u16string* const member = command.get<std::u16string>();
    return customer->invoke(member ? *member : std::u16string(), InvokeKind::get, {});
}

}  // namespace

Variant CustomerTag::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    static const velmor::automation::DispatchTable members({
        {u"Interface", MemberKind::get, 0, 0, [](CustomerTag&, Arguments&) -> Variant { return level; }},
        {u"GetTagValue", MemberKind::method, 1, 1,
         [](CustomerTag&, Arguments& args) -> Variant {
             if (!args.object(0)) throw velmor::Error(13);
             return valueFor(args.object(0));
         }},
        {u"CommandList", MemberKind::get, 0, 2, [](CustomerTag&, Arguments&) -> Variant { return u"NAME:CITY:"; }},
        {u"ParameterList", MemberKind::get, 1, 3, [](CustomerTag&, Arguments&) -> Variant { return u"ID:"; }},
        {u"SyntaxString", MemberKind::get, 1, 3,
         [](CustomerTag&, Arguments& args) -> Variant { return u"CUSTOMER>" + args.text(0) + u":[ID=identifier:]"; }},
        {u"CommandDescription", MemberKind::get, 1, 3,
         [](CustomerTag&, Arguments& args) -> Variant {
             return args.text(0) == u"CITY" ? u"The city of a customer" : u"The name of a customer";
         }},
        {u"ParameterValueList", MemberKind::get, 2, 4, [](CustomerTag&, Arguments&) -> Variant { return u""; }},
        {u"Dispose", MemberKind::method, 0, 0, [](CustomerTag&, Arguments&) -> Variant { return {}; }},
    });
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace sample
