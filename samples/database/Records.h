#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Database.h"
#include "automation/Object.h"
#include "automation/Variant.h"

namespace sample {

// A row of "items": ItemAccount, Name.
class ObjectItem final : public velmor::automation::Object {
public:
    ObjectItem(std::int32_t account, std::u16string name) : account_(account), name_(std::move(name)) {}
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvObjectItem"; }

private:
    std::int32_t account_;
    std::u16string name_;
};

// A row of "object_types", possibly absent: IsDefined, ClassName.
class TypeDefinition final : public velmor::automation::Object {
public:
    explicit TypeDefinition(std::u16string className) : className_(std::move(className)) {}
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvObjectTypeDef"; }

private:
    std::u16string className_;
};

// The database's System: GetObjectTypeDef(name).
class TypeCatalogue final : public velmor::automation::Object {
public:
    explicit TypeCatalogue(DatabaseRef database) : database_(std::move(database)) {}
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvSystem"; }

private:
    velmor::automation::ObjectRef GetObjectTypeDef(std::u16string_view psName) const;

    DatabaseRef database_;
};

// The business object "Sample.Customer", a row of "customers": Database (set), OpenItem(identifier),
// then Name and City.
class Customer final : public velmor::automation::Object {
public:
    velmor::automation::Variant invoke(std::u16string_view name, velmor::automation::InvokeKind kind,
                                       std::span<velmor::automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"Customer"; }

private:
    // Raises 13 for an object that is not a Sample.Database.
    void Database(const velmor::automation::ObjectRef& object);
    bool OpenItem(std::int32_t plID);  // false when the row is absent

    DatabaseRef database_;
    std::u16string name_;
    std::u16string city_;
};

}  // namespace sample
