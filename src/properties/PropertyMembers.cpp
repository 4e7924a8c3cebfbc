// The late-bound members of a property.

#include "automation/DispatchTable.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"

namespace velmor {

using automation::Arguments;
using automation::MemberKind;
using automation::ObjectRef;
using automation::Variant;

namespace {

using Self = privProperty;

Variant reference(ObjectRef object) {
    return Variant(std::move(object));
}

const automation::DispatchTable<Self>& members() {
    static const automation::DispatchTable<Self> table(u"Value",
                                                       {
                                                           {u"Name", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Name();
                                                            }},
                                                           {u"Value", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) { return self.Value(); }},
                                                           {u"Value", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.Value(args.newValue());
                                                                return Variant();
                                                            }},
                                                           {u"Value", MemberKind::set, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.SetValue(args.object(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"ValueType", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueType();
                                                            }},
                                                           {u"ValueTypeName", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueTypeName();
                                                            }},
                                                           {u"Created", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Created();
                                                            }},
                                                           {u"Modified", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Modified();
                                                            }},
                                                           {u"Multiple", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Multiple();
                                                            }},
                                                           {u"Changed", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Changed();
                                                            }},
                                                           {u"Changed", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.Changed(args.boolean(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"Encode", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Encode();
                                                            }},
                                                           {u"Encode", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.Encode(args.boolean(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"Encoding", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Encoding();
                                                            }},
                                                           {u"Encoding", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.Encoding(args.longInteger(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"Attributes", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                return reference(self.Attributes());
                                                            }},
                                                           {u"Properties", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                return reference(self.Properties());
                                                            }},
                                                           {u"Dispose", MemberKind::method, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                self.Dispose();
                                                                return Variant();
                                                            }},
                                                           {u"ValueLng", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueLng();
                                                            }},
                                                           {u"ValueLng", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueLng(args.longInteger(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"ValueStr", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueStr();
                                                            }},
                                                           {u"ValueStr", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueStr(args.text(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"SetValueStrRef", MemberKind::method, 1, 1,
                                                            [](Self& self, Arguments& args) {
                                                                self.SetValueStrRef(args.text(0));
                                                                return Variant();
                                                            }},
                                                           {u"ValueDate", MemberKind::get, 0, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.ValueDate(args.longOr(0, 0),
                                                                                      args.longOr(1, 0));
                                                            }},
                                                           {u"ValueDateSet", MemberKind::method, 1, 1,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueDateSet(args.date(0));
                                                                return Variant();
                                                            }},
                                                           {u"ValueTrue", MemberKind::get, 0, 1,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.ValueTrue(args.variant(0));
                                                            }},
                                                           {u"ValueBoolean", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueBoolean();
                                                            }},
                                                           {u"ValueBoolean", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueBoolean(args.boolean(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"ValueDbl", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueDbl();
                                                            }},
                                                           {u"ValueDbl", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueDbl(args.doubleFloat(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"ValueSng", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueSng();
                                                            }},
                                                           {u"ValueSng", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueSng(args.single(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"ValueInt", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ValueInt();
                                                            }},
                                                           {u"ValueInt", MemberKind::let, 0, 0,
                                                            [](Self& self, Arguments& args) {
                                                                self.ValueInt(args.integer(args.count() - 1));
                                                                return Variant();
                                                            }},
                                                           {u"Size", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Size();
                                                            }},
                                                           {u"SizeStored", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.SizeStored();
                                                            }},
                                                       });
    return table;
}

}  // namespace

Variant privProperty::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    return members().invoke(*this, name, kind, arguments);
}

}  // namespace velmor
