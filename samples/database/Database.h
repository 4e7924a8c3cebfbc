#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Sqlite.h"
#include "automation/Object.h"
#include "automation/Variant.h"

namespace sample {

// "Sample.Database": a host's database object as tags need it, on an SQLite file.
//
//     Open(path)                                  makes the file and its tables when they are absent
//     Close
//     System                                      GetObjectTypeDef(name): IsDefined, ClassName
//     GetObjectItem(type, identifier)             an object item; Nothing when the row is absent
//     LogEvent(name, message, number, category)   a row of "events"
//
// Tables: customers (id, name, city), items (type, account, name), object_types (name, class_name),
// events (id, at, name, message, number, category). An error of SQLite is raised as error 5.
class Database final : public velmor::automation::Object {
public:
    void Open(std::u16string_view psPath);
    void Close() { connection_.reset(); }
    velmor::automation::ObjectRef System();
    velmor::automation::ObjectRef GetObjectItem(std::int32_t plObjectType, std::int32_t plID);
    void LogEvent(std::u16string_view psName, std::u16string_view psMessage, std::int32_t plNumber,
                  std::int32_t plCategory);

    // Raises 5 when no file is open.
    Connection& connection();

    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    // The class name that the catalogue of handlers requires of a host's database.
    std::u16string typeName() const override { return u"kvDatabase"; }

private:
    std::optional<Connection> connection_;
};

using DatabaseRef = std::shared_ptr<Database>;

}  // namespace sample
