#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/Arguments.h"
#include "automation/Object.h"
#include "automation/Variant.h"

namespace velmor::automation {

// A class declares its late-bound members once, as rows, and serves Object::invoke from them:
//
//     const DispatchTable members(u"Item", {
//         {u"Item", MemberKind::get, 1, 1, [](kvTags& self, Arguments& args) -> Variant { ... }},
//         {u"Count", MemberKind::get, 0, 0, [](kvTags& self, Arguments&) -> Variant { ... }},
//         {u"Value", MemberKind::let, 0, 0, [](kvTags& self, Arguments& args) -> Variant { ... }},
//     });
//
//     Variant kvTags::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
//         return members.invoke(*this, name, kind, arguments);
//     }
//
// Names are found without regard to case and without an allocation. Gets and methods answer for each other, and so do
// lets and sets. The argument counts of a row leave out the new value of a let or set, which is always there and last
// (Arguments::newValue).
//
// `tag.Tags(1)` and `tag.Properties("x") = 1` call the default member of what `Tags` and `Properties`
// give: the arguments that a member does not take itself go on to the object that it gives.

using MemberKind = InvokeKind;

class DispatchTable {
public:
    // A member's function: a lambda without captures, of the class and the arguments, is one.
    class Call {
    public:
        template <class Member>
        Call(Member member) : function_(functionOf(+member, member)) {}

        Variant operator()(Object& self, Arguments& arguments) const { return function_(self, arguments); }

    private:
        using Function = Variant (*)(Object&, Arguments&);
        template <class Target, class Member>
        static Function functionOf(Variant (*)(Target&, Arguments&), Member) {
            return [](Object& self, Arguments& arguments) { return Member()(static_cast<Target&>(self), arguments); };
        }
        Function function_;
    };
    struct Row {
        std::u16string_view name;
        MemberKind kind;
        std::uint8_t required;  // arguments that cannot be left out
        std::uint8_t maximum;   // all arguments, the optional ones included
        Call call;
        // For hosts that ask for identifiers and pass arguments by name.
        bool givesObject = false;
        std::int32_t id = -1;
        std::u16string_view parameters = {};  // their names in order, with a blank after each
    };

    // The names must outlive the table (they are literals).
    explicit DispatchTable(std::vector<Row> rows) : DispatchTable({}, std::move(rows)) {}
    // With the name of the default member, which the empty name calls.
    DispatchTable(std::u16string_view defaultMember, std::vector<Row> rows)
        : default_(defaultMember), rows_(std::move(rows)) {}

    // Raises 438 for an unknown name, and 450 when the arguments do not fit. The object must be of the class.
    Variant invoke(Object& self, std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) const;

    // Any row of that name; null for an unknown name.
    const Row* find(std::u16string_view name) const noexcept;
    // The same by the member's identifier.
    const Row* findId(std::int32_t id) const noexcept;

    // The position of a parameter of the members with that identifier; -1 for an unknown name.
    std::int32_t parameter(std::int32_t id, std::u16string_view name) const noexcept;

private:
    struct Found {
        const Row& row;
        std::size_t own;  // the arguments that the member takes itself
    };
    Found resolve(std::u16string_view name, InvokeKind kind, std::span<const Variant> arguments) const;
    const Row* find(std::u16string_view name, InvokeKind kind) const noexcept;
    // The first row with this property; null without one.
    template <class IsSought>
    const Row* rowWhere(IsSought isSought) const noexcept;

    std::u16string_view default_;
    std::vector<Row> rows_;
};

// What a member gives, as a value: an object of any class as a reference.
template <class Value>
Variant answer(Value&& value) {
    if constexpr (std::is_convertible_v<Value, ObjectRef>) {
        return ObjectRef(std::forward<Value>(value));
    } else {
        return std::forward<Value>(value);
    }
}

}  // namespace velmor::automation
