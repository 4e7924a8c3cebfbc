#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "automation/Object.h"

namespace velmor::automation {

// The automation type numbers.
enum class VariantType : std::int32_t {
    empty = 0,
    null = 1,
    integer = 2,
    longInteger = 3,
    single = 4,
    doubleFloat = 5,
    currency = 6,
    date = 7,
    string = 8,
    object = 9,
    error = 10,
    boolean = 11,
    variant = 12,
    dataObject = 13,
    decimal = 14,
    byte = 17,
    userDefined = 36,
    array = 8192,
};

struct Empty {
    bool operator==(const Empty&) const = default;
};
struct Null {
    bool operator==(const Null&) const = default;
};
// Fixed point: the amount times 10,000.
struct Currency {
    std::int64_t scaled = 0;
    bool operator==(const Currency&) const = default;
};
// Days since 30 December 1899; the fraction is the time of day, also of negative dates.
struct Date {
    double days = 0;
    bool operator==(const Date&) const = default;
};
struct ErrorCode {
    std::int32_t code = 0;
    bool operator==(const ErrorCode&) const = default;
};
// A 96-bit integer divided by 10 to the power of scale (0 to 28).
struct Decimal {
    std::uint32_t high = 0;
    std::uint64_t low = 0;
    std::uint8_t scale = 0;
    bool negative = false;
    bool operator==(const Decimal&) const = default;
};
// An opaque reference that offers no members (a data object). Only identity counts.
struct DataObject {
    std::shared_ptr<void> reference;
    bool operator==(const DataObject&) const = default;
};
// An opaque record of the host; carried, never read.
struct UserDefined {
    std::shared_ptr<void> held;
    bool operator==(const UserDefined&) const = default;
};

// An opaque array of the host, with the type of its elements; carried, never read.
struct Array {
    VariantType elementType = VariantType::variant;
    std::shared_ptr<void> held;
    bool operator==(const Array&) const = default;
};

// One closed value type with a C++ type for each automation type. There are no implicit
// conversions from numbers: the makers and the constructors below say which type is meant.
// Copying is as deep as the platform's: texts are copied, objects are shared.
class Variant {
public:
    Variant() = default;  // Empty
    Variant(std::int16_t value) : value_(value) {}
    Variant(std::int32_t value) : value_(value) {}
    Variant(float value) : value_(value) {}
    Variant(double value) : value_(value) {}
    Variant(bool value) : value_(value) {}
    Variant(std::uint8_t value) : value_(value) {}
    Variant(Currency value) : value_(value) {}
    Variant(Date value) : value_(value) {}
    Variant(Decimal value) : value_(value) {}
    Variant(Null value) : value_(value) {}
    Variant(ErrorCode value) : value_(value) {}
    Variant(DataObject value) : value_(std::move(value)) {}
    Variant(UserDefined value) : value_(std::move(value)) {}
    Variant(std::u16string value) : value_(std::move(value)) {}
    Variant(std::u16string_view value) : value_(std::u16string(value)) {}
    Variant(const char16_t* value) : value_(std::u16string(value)) {}
    Variant(ObjectRef value) : value_(std::move(value)) {}  // a null reference is Nothing
    template <std::derived_from<Object> T>
    Variant(std::shared_ptr<T> value) : value_(ObjectRef(std::move(value))) {}
    Variant(Array value) : value_(std::move(value)) {}
    template <class T>
    Variant(T*) = delete;  // no pointer becomes a boolean

    // An optional argument that was left out: the error code 0x80020004 (parameter not found).
    static Variant missing();
    bool isMissing() const noexcept;

    // The type number; arrays report array + their element type. Any object reports 9, Nothing too.
    std::int32_t typeCode() const noexcept;
    VariantType type() const noexcept;  // `array` for every array

    bool isEmpty() const noexcept { return std::holds_alternative<Empty>(value_); }
    bool isObject() const noexcept { return std::holds_alternative<ObjectRef>(value_); }
    bool isString() const noexcept { return std::holds_alternative<std::u16string>(value_); }

    // The value of that C++ type, or null when it is another.
    template <class T>
    const T* get() const noexcept {
        return std::get_if<T>(&value_);
    }
    template <class T>
    T* get() noexcept {
        return std::get_if<T>(&value_);
    }

    // The object; null for Nothing and for every other type.
    ObjectRef object() const noexcept;

    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), value_);
    }

    // Same type and same value (objects: same reference). Not the platform's comparison.
    bool identical(const Variant& other) const noexcept { return value_ == other.value_; }

private:
    std::variant<Empty, Null, std::int16_t, std::int32_t, float, double, Currency, Date, std::u16string, ObjectRef,
                 ErrorCode, bool, DataObject, Decimal, std::uint8_t, UserDefined, Array>
        value_;
};

// Calls a method of a late-bound object.
template <class... Values>
Variant call(Object& object, std::u16string_view method, Values&&... values) {
    Variant arguments[] = {Variant(std::forward<Values>(values))...};
    return object.invoke(method, InvokeKind::method, arguments);
}

// As the automation function TypeName: "String", "Long", "Nothing", "Variant()", ...
std::u16string typeNameOf(const Variant& value);

}  // namespace velmor::automation
