// kvTag: its members by name.

#include "automation/DispatchTable.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "direct/kvDirectTag.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::Arguments;
using automation::DispatchTable;
using automation::MemberKind;
using automation::ObjectRef;
using automation::Variant;

namespace {

Variant nothing() {
    return {};
}

const DispatchTable<kvTag>& members() {
    static const DispatchTable<kvTag> kMembers({
        {u"Name", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.Name(); }},
        {u"Name", MemberKind::let, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant { return self.Name(args.text(0)), nothing(); }},
        {u"Value", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.Value(); }},
        {u"Value", MemberKind::let, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant { return self.Value(args.text(0)), nothing(); }},
        {u"Result", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.Result(); }},
        {u"Properties", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.Properties().object(); }},
        {u"Properties", MemberKind::set, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant {
             return self.Properties(Collection::fromObject(args.object(0))), nothing();
         }},
        {u"GetProcessedPropertiesValue", MemberKind::method, 1, 2,
         [](kvTag& self, Arguments& args) -> Variant {
             return self.GetProcessedPropertiesValue(args.text(0), args.textOr(1, {}));
         }},
        {u"Variables", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.Variables().object(); }},
        {u"Variables", MemberKind::set, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant {
             return self.Variables(Collection::fromObject(args.object(0))), nothing();
         }},
        {u"GetProcessedVariablesValue", MemberKind::method, 1, 2,
         [](kvTag& self, Arguments& args) -> Variant {
             return self.GetProcessedVariablesValue(args.text(0), args.textOr(1, {}));
         }},
        {u"BuildTagCollection", MemberKind::method, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.BuildTagCollection(), nothing(); }},
        {u"Elements", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return ObjectRef(self.Elements()); }},
        {u"GetProcessedElementsValue", MemberKind::method, 1, 2,
         [](kvTag& self, Arguments& args) -> Variant {
             return self.GetProcessedElementsValue(args.text(0), args.variantOr(1, Variant(u"")));
         }},
        {u"HandlerName", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.HandlerName(); }},
        {u"CommandName", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.CommandName(); }},
        {u"CommandValue", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.CommandValue(); }},
        {u"CommandValueProcessed", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.CommandValueProcessed(); }},
        {u"Database", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.Database(); }},
        {u"Database", MemberKind::set, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant { return self.Database(args.object(0)), nothing(); }},
        {u"ProtectRTFCode", MemberKind::method, 1, 1,
         [](kvTag& self, Arguments& args) -> Variant {
             std::u16string value = args.text(0);
             self.ProtectRTFCode(value);
             args.setText(0, std::move(value));
             return nothing();
         }},
        {u"ProtectRTF", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.ProtectRTF(); }},
        {u"ProtectRTF", MemberKind::let, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant { return self.ProtectRTF(args.boolean(0)), nothing(); }},
        {u"CleanRTFFile", MemberKind::method, 1, 2,
         [](kvTag& self, Arguments& args) -> Variant { return self.CleanRTFFile(args.text(0), args.textOr(1, {})); }},
        {u"CleanRTFMergeMode", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.CleanRTFMergeMode(); }},
        {u"CleanRTFMergeMode", MemberKind::let, 0, 0,
         [](kvTag& self, Arguments& args) -> Variant { return self.CleanRTFMergeMode(args.boolean(0)), nothing(); }},
        {u"CleanRTF", MemberKind::method, 1, 1,
         [](kvTag& self, Arguments& args) -> Variant {
             std::u16string text = args.text(0);
             args.setText(0, {});  // so that a large document is held once
             self.CleanRTF(text);
             args.setText(0, std::move(text));
             return nothing();
         }},
        {u"CleanRTFByVal", MemberKind::method, 1, 1,
         [](kvTag& self, Arguments& args) -> Variant { return self.CleanRTFByVal(args.text(0)); }},
        {u"NewTag", MemberKind::method, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return ObjectRef(self.NewTag()); }},
        {u"ProcessValue", MemberKind::method, 1, 1,
         [](kvTag& self, Arguments& args) -> Variant { return self.ProcessValue(args.text(0)); }},
        {u"ProcessName", MemberKind::method, 1, 1,
         [](kvTag& self, Arguments& args) -> Variant { return self.ProcessName(args.text(0)); }},
        {u"Tags", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return ObjectRef(self.Tags()); }},
        {u"Direct", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return ObjectRef(self.Direct()); }},
        {u"LogError", MemberKind::method, 2, 5,
         [](kvTag& self, Arguments& args) -> Variant {
             std::int32_t number = args.longOr(2, 0);
             return self.LogError(args.text(0), args.text(1), number, args.textOr(3, {}), args.textOr(4, {})),
                    nothing();
         }},
        {u"ErrorLog", MemberKind::get, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return ObjectRef(self.ErrorLog()); }},
        {u"Library", MemberKind::get, 0, 0, [](kvTag& self, Arguments&) -> Variant { return self.Library(); }},
        {u"AddTableStartEndControlWords", MemberKind::method, 0, 0,
         [](kvTag& self, Arguments&) -> Variant { return self.AddTableStartEndControlWords(), nothing(); }},
        {u"RemoveExtraTrowd", MemberKind::method, 2, 2,
         [](kvTag& self, Arguments& args) -> Variant {
             std::int32_t start = args.longInteger(0);
             std::int32_t end = args.longInteger(1);
             self.RemoveExtraTrowd(start, end);
             args.setLong(0, start);
             args.setLong(1, end);
             return nothing();
         }},
        {u"Dispose", MemberKind::method, 0, 1,
         [](kvTag& self, Arguments& args) -> Variant { return self.Dispose(args.boolean(0, true)), nothing(); }},
    });
    return kMembers;
}

}  // namespace

Variant kvTag::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    return members().invoke(*this, name, kind, arguments);
}

}  // namespace velmor
