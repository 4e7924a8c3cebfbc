#include "Database.h"

#include "Records.h"
#include "automation/DispatchTable.h"
#include "text/Error.h"

namespace sample {

using velmor::automation::Arguments;
using velmor::automation::MemberKind;
using velmor::automation::ObjectRef;
using velmor::automation::Variant;

namespace {

constexpr const char* tables = R"(
    CREATE TABLE IF NOT EXISTS customers (id INTEGER PRIMARY KEY, name TEXT NOT NULL, city TEXT NOT NULL);
    CREATE TABLE IF NOT EXISTS items (
        type INTEGER NOT NULL, account INTEGER NOT NULL, name TEXT NOT NULL, PRIMARY KEY (type, account));
    CREATE TABLE IF NOT EXISTS object_types (name TEXT PRIMARY KEY COLLATE NOCASE, class_name TEXT NOT NULL);
    CREATE TABLE IF NOT EXISTS events (
        id INTEGER PRIMARY KEY, at TEXT NOT NULL DEFAULT CURRENT_TIMESTAMP, name TEXT NOT NULL,
        message TEXT NOT NULL, number INTEGER NOT NULL, category INTEGER NOT NULL);
    INSERT OR IGNORE INTO object_types VALUES ('Customer', 'Sample.Customer');
)";

}  // namespace

void Database::Open(std::u16string_view psPath) {
    Connection opened(psPath);
    opened.execute(tables);
    connection_ = std::move(opened);
}

Connection& Database::connection() {
    if (!connection_) throw velmor::Error(5, u"Sample.Database", u"The database is not open");
    return *connection_;
}

ObjectRef Database::System() {
    return std::make_shared<TypeCatalogue>(std::static_pointer_cast<Database>(shared_from_this()));
}

ObjectRef Database::GetObjectItem(std::int32_t plObjectType, std::int32_t plID) {
    Statement select(connection(), "SELECT name FROM items WHERE type = ? AND account = ?");
    if (!select.bind(0, plObjectType).bind(1, plID).step()) return nullptr;
    return std::make_shared<ObjectItem>(plID, select.text(0));
}

void Database::LogEvent(std::u16string_view psName, std::u16string_view psMessage, std::int32_t plNumber,
                        std::int32_t plCategory) {
    Statement insert(connection(), "INSERT INTO events (name, message, number, category) VALUES (?, ?, ?, ?)");
    insert.bind(0, psName).bind(1, psMessage).bind(2, plNumber).bind(3, plCategory).step();
}

Variant Database::invoke(std::u16string_view name, velmor::automation::InvokeKind kind, std::span<Variant> arguments) {
    static const velmor::automation::DispatchTable members({
        {u"Open", MemberKind::method, 1, 1,
         [](Database& self, Arguments& args) -> Variant { return self.Open(args.text(0)), Variant(); }},
        {u"Close", MemberKind::method, 0, 0,
         [](Database& self, Arguments&) -> Variant { return self.Close(), Variant(); }},
        {u"System", MemberKind::get, 0, 0, [](Database& self, Arguments&) -> Variant { return self.System(); }},
        {u"GetObjectItem", MemberKind::method, 2, 2,
         [](Database& self, Arguments& args) -> Variant {
             return self.GetObjectItem(args.longInteger(0), args.longInteger(1));
         }},
        {u"LogEvent", MemberKind::method, 4, 4,
         [](Database& self, Arguments& args) -> Variant {
             return self.LogEvent(args.text(0), args.text(1), args.longInteger(2), args.longInteger(3)), Variant();
         }},
    });
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace sample
