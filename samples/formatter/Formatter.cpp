#include "Formatter.h"

#include <array>
#include <optional>

#include "Patterns.h"
#include "automation/Convert.h"
#include "automation/DispatchTable.h"
#include "text/Compare.h"
#include "text/Error.h"

namespace sample {
namespace {

using namespace velmor::automation;

// The highest level of the component: every member of the table below is called.
constexpr std::int32_t interfaceLevel = 5;

struct Command {
    std::u16string_view name, syntax, description, defaultPattern, patterns;
};

constexpr std::array<Command, 2> commands = {{
    {u"DATE", u"FORMAT>DATE:PROPERTY=name:[VALUE=date:][PATTERN=(d mmmm yyyy):]",
     u"A date by a pattern of d, m, y, h, n, s and AM/PM", u"d mmmm yyyy",
     u"d mmmm yyyy:dddd, d mmmm yyyy:mmmm yyyy:dd/mm/yyyy:"},
    {u"NUMBER", u"FORMAT>NUMBER:PROPERTY=name:[VALUE=number:][PATTERN=(#,##0.00):]",
     u"A number by a pattern of #, 0, comma, point and %", u"#,##0.00", u"#,##0.00:#,##0:0.0:0%:"},
}};

const Command* findCommand(std::u16string_view name) {
    for (const Command& command : commands) {
        if (velmor::equalIgnoringCase(command.name, name)) return &command;
    }
    return nullptr;
}

Variant call(const ObjectRef& object, std::u16string_view member, InvokeKind kind, std::u16string_view first = {},
             std::u16string_view second = {}) {
    if (first.empty()) return object->invoke(member, kind, {});
    std::array<Variant, 2> arguments = {Variant(first), Variant(second)};
    return object->invoke(member, kind, arguments);
}

std::u16string parameter(const ObjectRef& tag, std::u16string_view name, std::u16string_view otherwise) {
    return toText(call(tag, u"GetProcessedElementsValue", InvokeKind::method, name, otherwise)).value_or(u"");
}

bool isNothing(const Variant& value) {
    return toText(value).value_or(u"").empty();
}

[[noreturn]] void refuse(const Variant& value, std::u16string_view kind) {
    throw velmor::Error(13, u"Sample.Formatter",
                        u"\"" + toText(value).value_or(u"") + u"\" is not a " + std::u16string(kind));
}

std::u16string format(const Command& command, const Variant& value, std::u16string_view pattern) {
    if (command.name == u"DATE") {
        if (const auto date = toDate(value)) return formatDate(*date, pattern);
        refuse(value, u"date");
    }
    if (const auto number = toDouble(value)) return formatNumber(*number, pattern);
    refuse(value, u"number");
}

Variant describe(const Arguments& args, std::u16string_view Command::*field) {
    const Command* command = findCommand(args.text(0));
    return command ? Variant((*command).*field) : Variant(u"");
}

Variant values(const Arguments& args) {
    const Command* command = findCommand(args.text(0));
    const bool known = command && velmor::equalIgnoringCase(args.text(1), u"PATTERN");
    return known ? Variant(command->patterns) : Variant(u"");
}

// The last two arguments of the catalogue's members are the handler's name and the host's database.
const DispatchTable members({
    {u"Interface", MemberKind::get, 0, 0, [](Formatter&, Arguments&) { return Variant(interfaceLevel); }},
    {u"GetTagValue", MemberKind::method, 1, 1,
     [](Formatter& self, Arguments& args) { return Variant(self.GetTagValue(args.object(0))); }},
    {u"CommandList", MemberKind::get, 0, 2, [](Formatter&, Arguments&) { return Variant(u"DATE:NUMBER:"); }},
    {u"ParameterList", MemberKind::get, 1, 3,
     [](Formatter&, Arguments& args) { return Variant(findCommand(args.text(0)) ? u"PROPERTY:VALUE:PATTERN:" : u""); }},
    {u"SyntaxString", MemberKind::get, 1, 3,
     [](Formatter&, Arguments& args) { return describe(args, &Command::syntax); }},
    {u"CommandDescription", MemberKind::get, 1, 3,
     [](Formatter&, Arguments& args) { return describe(args, &Command::description); }},
    {u"ParameterValueList", MemberKind::get, 2, 4, [](Formatter&, Arguments& args) { return values(args); }},
    {u"Dispose", MemberKind::method, 0, 0,
     [](Formatter& self, Arguments&) {
         self.Dispose();
         return Variant();
     }},
});

}  // namespace

Variant Formatter::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    return members.invoke(*this, name, kind, arguments);
}

std::u16string Formatter::GetTagValue(const ObjectRef& poTag) {
    if (!poTag) throw velmor::Error(13);
    tag_ = poTag;
    const auto name = toText(call(tag_, u"CommandName", InvokeKind::get)).value_or(u"");
    const Command* command = findCommand(name);
    if (!command) throw velmor::Error(5, u"Sample.Formatter", u"There is no command \"" + name + u"\"");
    const Variant value = subject();
    return isNothing(value) ? std::u16string()
                            : format(*command, value, parameter(tag_, u"PATTERN", command->defaultPattern));
}

// The value to format.
Variant Formatter::subject() const {
    const std::u16string property = parameter(tag_, u"PROPERTY", u"");
    if (property.empty()) return Variant(parameter(tag_, u"VALUE", u""));
    const ObjectRef properties = call(tag_, u"Properties", InvokeKind::get).object();
    return call(properties, u"GetValue", InvokeKind::method, property, u"");
}

}  // namespace sample
