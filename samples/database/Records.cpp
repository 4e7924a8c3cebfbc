#include "Records.h"

#include "automation/DispatchTable.h"
#include "text/Error.h"

namespace sample {

using velmor::automation::Arguments;
using velmor::automation::DispatchTable;
using velmor::automation::InvokeKind;
using velmor::automation::MemberKind;
using velmor::automation::ObjectRef;
using velmor::automation::Variant;

Variant ObjectItem::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    static const DispatchTable members({
        {u"ItemAccount", MemberKind::get, 0, 0, [](ObjectItem& self, Arguments&) -> Variant { return self.account_; }},
        {u"Name", MemberKind::get, 0, 0, [](ObjectItem& self, Arguments&) -> Variant { return self.name_; }},
    });
    return members.invoke(*this, name, kind, arguments);
}

Variant TypeDefinition::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    static const DispatchTable members({
        {u"IsDefined", MemberKind::get, 0, 0,
         [](TypeDefinition& self, Arguments&) -> Variant { return !self.className_.empty(); }},
        {u"ClassName", MemberKind::get, 0, 0,
         [](TypeDefinition& self, Arguments&) -> Variant { return self.className_; }},
    });
    return members.invoke(*this, name, kind, arguments);
}

ObjectRef TypeCatalogue::GetObjectTypeDef(std::u16string_view psName) const {
    Statement select(database_->connection(), "SELECT class_name FROM object_types WHERE name = ?");
    const bool isDefined = select.bind(0, psName).step();
    return std::make_shared<TypeDefinition>(isDefined ? select.text(0) : std::u16string());
}

Variant TypeCatalogue::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    static const DispatchTable members({
        {u"GetObjectTypeDef", MemberKind::method, 1, 1,
         [](TypeCatalogue& self, Arguments& args) -> Variant { return self.GetObjectTypeDef(args.text(0)); }},
    });
    return members.invoke(*this, name, kind, arguments);
}

void Customer::Database(const ObjectRef& object) {
    database_ = std::dynamic_pointer_cast<sample::Database>(object);
    if (!database_) throw velmor::Error(13);
}

bool Customer::OpenItem(std::int32_t plID) {
    if (!database_) throw velmor::Error(13);
    Statement select(database_->connection(), "SELECT name, city FROM customers WHERE id = ?");
    if (!select.bind(0, plID).step()) return false;
    name_ = select.text(0);
    city_ = select.text(1);
    return true;
}

Variant Customer::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    static const DispatchTable members({
        {u"Database", MemberKind::set, 0, 0,
         [](Customer& self, Arguments& args) -> Variant { return self.Database(args.object(0)), Variant(); }},
        {u"OpenItem", MemberKind::method, 1, 1,
         [](Customer& self, Arguments& args) -> Variant { return self.OpenItem(args.longInteger(0)); }},
        {u"Name", MemberKind::get, 0, 0, [](Customer& self, Arguments&) -> Variant { return self.name_; }},
        {u"City", MemberKind::get, 0, 0, [](Customer& self, Arguments&) -> Variant { return self.city_; }},
    });
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace sample
