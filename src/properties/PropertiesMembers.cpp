// The late-bound members of the collection.

#include "automation/DispatchTable.h"
#include "properties/PropertyEnumerator.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::Arguments;
using automation::MemberKind;
using automation::ObjectRef;
using automation::Variant;

namespace {

using Self = privProperties;

Variant reference(ObjectRef object) {
    return Variant(std::move(object));
}

const automation::DispatchTable<Self>& members() {
    static const automation::DispatchTable<Self> table(u"Item",
                                                       {
                                                           {u"Add", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.Add(args.text(0), args.variant(1),
                                                                                          args.boolean(2, false)));
                                                            }},
                                                           {u"AddStr", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddStr(args.text(0), args.text(1),
                                                                                             args.boolean(2, false)));
                                                            }},
                                                           {u"AddLng", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddLng(args.text(0),
                                                                                             args.longInteger(1),
                                                                                             args.boolean(2, false)));
                                                            }},
                                                           {u"AddDbl", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddDbl(args.text(0),
                                                                                             args.doubleFloat(1),
                                                                                             args.boolean(2, false)));
                                                            }},
                                                           {u"AddSng", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddSng(args.text(0),
                                                                                             args.single(1),
                                                                                             args.boolean(2, false)));
                                                            }},
                                                           {u"AddDate", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddDate(args.text(0),
                                                                                              args.date(1),
                                                                                              args.boolean(2, false)));
                                                            }},
                                                           {u"AddBoolean", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(
                                                                    self.AddBoolean(args.text(0), args.boolean(1),
                                                                                    args.boolean(2, false)));
                                                            }},
                                                           {u"AddInt", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.AddInt(args.text(0),
                                                                                             args.integer(1),
                                                                                             args.boolean(2, false)));
                                                            }},
                                                           {u"AddObject", MemberKind::method, 2, 3,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(
                                                                    self.AddObject(args.text(0), args.object(1),
                                                                                   args.boolean(2, false)));
                                                            }},
                                                           {u"Item", MemberKind::get, 1, 1,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.Item(args.variant(0)));
                                                            }},
                                                           {u"Count", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Count();
                                                            }},
                                                           {u"Remove", MemberKind::method, 1, 1,
                                                            [](Self& self, Arguments& args) {
                                                                self.Remove(args.variant(0));
                                                                return Variant();
                                                            }},
                                                           {u"NewEnum", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                return reference(self.NewEnum());
                                                            }},
                                                           {u"_NewEnum", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                return reference(self.NewEnum());
                                                            }},
                                                           {u"GetProperty", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.GetProperty(
                                                                    args.text(0), args.variantOr(1, {})));
                                                            }},
                                                           {u"GetValue", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) {
                                                                return self.GetValue(args.text(0),
                                                                                     args.variantOr(1, {}));
                                                            }},
                                                           {u"GetValueStr", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueStr(args.text(0),
                                                                                        args.textOr(1, {}));
                                                            }},
                                                           {u"GetValueStrCatDump", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueStrCatDump(args.text(0),
                                                                                               args.textOr(1, {}));
                                                            }},
                                                           {u"GetValueLng", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueLng(args.text(0),
                                                                                        args.longOr(1, 0));
                                                            }},
                                                           {u"GetValueInt", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueInt(args.text(0),
                                                                                        args.integerOr(1, 0));
                                                            }},
                                                           {u"GetValueDbl", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueDbl(args.text(0),
                                                                                        args.doubleOr(1, 0));
                                                            }},
                                                           {u"GetValueSng", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueSng(
                                                                    args.text(0), args.has(1) ? args.single(1) : 0);
                                                            }},
                                                           {u"GetValueDate", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueDate(
                                                                    args.text(0),
                                                                    args.has(1) ? args.date(1) : automation::Date{});
                                                            }},
                                                           {u"GetValueObject", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(
                                                                    self.GetValueObject(args.text(0), args.object(1)));
                                                            }},
                                                           {u"GetValueBoolean", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetValueBoolean(args.text(0),
                                                                                            args.boolean(1, false));
                                                            }},
                                                           {u"Delimited", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Delimited();
                                                            }},
                                                           {u"Stored", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Stored();
                                                            }},
                                                           {u"Command", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Command();
                                                            }},
                                                           {u"TagCommand", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.TagCommand();
                                                            }},
                                                           {u"Build", MemberKind::method, 1, 4,
                                                            [](Self& self, Arguments& args) {
                                                                self.Build(args.text(0), args.boolean(1, false),
                                                                           args.boolean(2, false),
                                                                           args.textOr(3, u":"));
                                                                return Variant();
                                                            }},
                                                           {u"BuildByVal", MemberKind::method, 1, 4,
                                                            [](Self& self, Arguments& args) {
                                                                self.BuildByVal(args.text(0), args.boolean(1, false),
                                                                                args.boolean(2, false),
                                                                                args.textOr(3, u":"));
                                                                return Variant();
                                                            }},
                                                           {u"BuildByDelimited", MemberKind::method, 1, 4,
                                                            [](Self& self, Arguments& args) {
                                                                self.BuildByDelimited(
                                                                    args.text(0), args.boolean(1, false),
                                                                    args.boolean(2, false), args.textOr(3, u":"));
                                                                return Variant();
                                                            }},
                                                           {u"BuildInternal", MemberKind::method, 1, 4,
                                                            [](Self& self, Arguments& args) {
                                                                self.BuildInternal(args.text(0), args.boolean(1, false),
                                                                                   args.boolean(2, false),
                                                                                   args.textOr(3, u":"));
                                                                return Variant();
                                                            }},
                                                           {u"SaveFile", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.SaveFile(args.text(0), args.textOr(1, {}));
                                                            }},
                                                           {u"SaveToFile", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.SaveToFile(args.text(0),
                                                                                       args.textOr(1, {}));
                                                            }},
                                                           {u"LoadFromFile", MemberKind::method, 1, 2,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.LoadFromFile(args.text(0),
                                                                                         args.textOr(1, {}));
                                                            }},
                                                           {u"BuildByContainsQuery", MemberKind::method, 1, 1,
                                                            [](Self& self, Arguments& args) {
                                                                self.BuildByContainsQuery(args.text(0));
                                                                return Variant();
                                                            }},
                                                           {u"ContainsQuery", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.ContainsQuery();
                                                            }},
                                                           {u"RemoveAll", MemberKind::method, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                self.RemoveAll();
                                                                return Variant();
                                                            }},
                                                           {u"Dispose", MemberKind::method, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                self.Dispose();
                                                                return Variant();
                                                            }},
                                                           {u"Changed", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.Changed();
                                                            }},
                                                           {u"Sort", MemberKind::method, 0, 0,
                                                            [](Self& self, Arguments&) {
                                                                self.Sort();
                                                                return Variant();
                                                            }},
                                                           {u"Insert", MemberKind::method, 3, 4,
                                                            [](Self& self, Arguments& args) {
                                                                return reference(self.Insert(
                                                                    args.longInteger(0), args.text(1), args.variant(2),
                                                                    args.boolean(3, false)));
                                                            }},
                                                           {u"Move", MemberKind::method, 2, 2,
                                                            [](Self& self, Arguments& args) {
                                                                self.Move(args.variant(0), args.longInteger(1));
                                                                return Variant();
                                                            }},
                                                           {u"GetPropertyIndex", MemberKind::method, 1, 1,
                                                            [](Self& self, Arguments& args) -> Variant {
                                                                return self.GetPropertyIndex(args.text(0));
                                                            }},
                                                           {u"CountTotal", MemberKind::get, 0, 0,
                                                            [](Self& self, Arguments&) -> Variant {
                                                                return self.CountTotal();
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

Variant privProperties::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    return members().invoke(*this, name, kind, arguments);
}

}  // namespace velmor
