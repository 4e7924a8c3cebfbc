#include "HostObjects.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "Journal.h"
#include "automation/DispatchTable.h"
#include "text/Compare.h"

namespace testhandlers {

using namespace velmor::automation;

namespace {

class Item final : public Object {
public:
    explicit Item(std::u16string itemName) : name(std::move(itemName)) {}
    Variant invoke(std::u16string_view member, InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"HostItem"; }

    const std::u16string name;
    Variant value;
};

const DispatchTable<Item> itemMembers(
    u"Value", {
                  {u"Name", MemberKind::get, 0, 0, [](Item& self, Arguments&) { return Variant(self.name); }},
                  {u"Value", MemberKind::get, 0, 0, [](Item& self, Arguments&) { return self.value; }},
                  {u"Value", MemberKind::let, 0, 0,
                   [](Item& self, Arguments& args) {
                       self.value = args.newValue();
                       return Variant();
                   }},
              });

Variant Item::invoke(std::u16string_view member, InvokeKind kind, std::span<Variant> arguments) {
    return itemMembers.invoke(*this, member, kind, arguments);
}

class HostCollection final : public Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"HostCollection"; }

    std::shared_ptr<Item> find(std::u16string_view name) const {
        for (const auto& item : items_) {
            if (velmor::equalIgnoringCase(item->name, name)) return item;
        }
        return nullptr;
    }
    std::shared_ptr<Item> add(const std::u16string& name, const Variant& value, bool replace) {
        std::shared_ptr<Item> item = replace ? find(name) : nullptr;
        if (!item) item = items_.emplace_back(std::make_shared<Item>(name));
        item->value = value;
        return item;
    }
    std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }

private:
    std::vector<std::shared_ptr<Item>> items_;
};

const DispatchTable<HostCollection> collectionMembers(
    u"Item",
    {
        {u"Add", MemberKind::method, 2, 3,
         [](HostCollection& self, Arguments& args) {
             note(u"Add " + args.text(0));
             return Variant(ObjectRef(self.add(args.text(0), args.variant(1), args.boolean(2, false))));
         }},
        {u"Item", MemberKind::get, 1, 1,
         [](HostCollection& self, Arguments& args) { return Variant(ObjectRef(self.find(args.text(0)))); }},
        {u"Count", MemberKind::get, 0, 0, [](HostCollection& self, Arguments&) { return Variant(self.count()); }},
        {u"GetValue", MemberKind::method, 2, 2,
         [](HostCollection& self, Arguments& args) {
             const auto item = self.find(args.text(0));
             return item ? item->value : args.variant(1);
         }},
        {u"Dispose", MemberKind::method, 0, 0,
         [](HostCollection&, Arguments&) {
             note(u"Dispose collection");
             return Variant();
         }},
    });

Variant HostCollection::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    return collectionMembers.invoke(*this, name, kind, arguments);
}

class Database final : public Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override;
    std::u16string typeName() const override { return u"HostDatabase"; }
};

const DispatchTable<Database> databaseMembers({
    {u"Name", MemberKind::get, 0, 0, [](Database&, Arguments&) { return Variant(u"host database"); }},
    {u"GetObjectItem", MemberKind::method, 2, 2,
     [](Database&, Arguments& args) {
         note(u"item " + args.text(0) + u" " + args.text(1));
         const auto item = std::make_shared<Item>(args.text(0));
         item->value = args.variant(1);
         return Variant(ObjectRef(item));
     }},
    {u"LogEvent", MemberKind::method, 4, 4,
     [](Database&, Arguments& args) {
         const std::u16string text = args.text(1);
         note(u"event " + args.text(0) + u" " + text.substr(0, text.find(u'\r')) + u" " + args.text(2) + u" " +
              args.text(3));
         return Variant();
     }},
});

Variant Database::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
    return databaseMembers.invoke(*this, name, kind, arguments);
}

}  // namespace

ObjectRef makeCollection() {
    return std::make_shared<HostCollection>();
}

ObjectRef makeDatabase() {
    return std::make_shared<Database>();
}

}  // namespace testhandlers
