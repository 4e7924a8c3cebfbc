#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
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
//     const DispatchTable<kvTags> kMembers(u"Item", {
//         {u"Item", MemberKind::get, 1, 1, [](kvTags& self, Arguments& args) -> Variant { ... }},
//         {u"Count", MemberKind::get, 0, 0, [](kvTags& self, Arguments&) -> Variant { ... }},
//         {u"Value", MemberKind::let, 0, 0, [](kvTags& self, Arguments& args) -> Variant { ... }},
//     });
//
//     Variant kvTags::invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) {
//         return kMembers.invoke(*this, name, kind, arguments);
//     }
//
// Names are found without regard to case, in logarithmic time and without an allocation. Gets and
// methods answer for each other; a set is taken by a let and, when the new value is an object, a
// let by a set. The argument counts of a row leave out the new value of a let or set, which is
// always there and last (Arguments::newValue).

enum class MemberKind : std::uint8_t { method, get, let, set };

// The part of the table that does not depend on the class.
class MemberIndex {
public:
    struct Entry {
        std::u16string_view name;
        MemberKind kind;
        std::uint8_t required;
        std::uint8_t maximum;
    };
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    // The names must outlive the index (they are literals).
    explicit MemberIndex(std::vector<Entry> entries);

    // The member that the empty name calls.
    void setDefault(std::u16string_view name) noexcept { default_ = name; }

    // The row to call. Raises 438 for an unknown name and 450 when the arguments do not fit.
    std::size_t resolve(std::u16string_view name, InvokeKind kind, std::span<const Variant> arguments) const;

    // Any row of that name, as the table spells it; npos for an unknown name.
    std::size_t find(std::u16string_view name) const noexcept;
    const Entry& entry(std::size_t index) const noexcept { return entries_[index]; }
    std::size_t size() const noexcept { return entries_.size(); }

private:
    std::size_t find(std::u16string_view name, MemberKind kind) const noexcept;
    std::size_t find(std::u16string_view name, InvokeKind kind, std::span<const Variant> arguments) const noexcept;

    std::vector<Entry> entries_;
    std::vector<std::pair<std::size_t, std::size_t>> byHash_;  // hash of the name, row; sorted
    std::u16string_view default_;
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

// A by-reference text for a member that reads it, or changes it in place. The argument is changed only by the second,
// and is held once meanwhile.
class TextReference {
public:
    TextReference(Arguments& arguments, std::size_t index)
        : arguments_(arguments), index_(index), text_(arguments.text(index)) {}
    TextReference(const TextReference&) = delete;
    TextReference& operator=(const TextReference&) = delete;
    ~TextReference() {
        if (lent_) arguments_.setText(index_, std::move(text_));
    }

    operator std::u16string_view() const noexcept { return text_; }
    operator std::u16string&() {
        arguments_.setText(index_, {});
        lent_ = true;
        return text_;
    }

private:
    Arguments& arguments_;
    std::size_t index_;
    std::u16string text_;
    bool lent_ = false;
};

// The same for a long; 0 where it was left out.
class LongReference {
public:
    LongReference(Arguments& arguments, std::size_t index)
        : arguments_(arguments), index_(index), number_(arguments.longOr(index, 0)) {}
    LongReference(const LongReference&) = delete;
    LongReference& operator=(const LongReference&) = delete;
    ~LongReference() {
        if (arguments_.has(index_)) arguments_.setLong(index_, number_);
    }

    operator std::int32_t&() noexcept { return number_; }

private:
    Arguments& arguments_;
    std::size_t index_;
    std::int32_t number_;
};

template <class Target>
class DispatchTable {
public:
    struct Row {
        std::u16string_view name;
        MemberKind kind;
        std::uint8_t required;  // arguments that cannot be left out
        std::uint8_t maximum;   // all arguments, the optional ones included
        Variant (*call)(Target& self, Arguments& arguments);
    };

    DispatchTable(std::initializer_list<Row> rows) : DispatchTable({}, rows) {}
    // With the name of the default member.
    DispatchTable(std::u16string_view defaultMember, std::initializer_list<Row> rows)
        : index_(entriesOf(rows)), calls_(callsOf(rows)) {
        index_.setDefault(defaultMember);
    }

    Variant invoke(Target& self, std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) const {
        const std::size_t row = index_.resolve(name, kind, arguments);
        Arguments typed(arguments);
        return calls_[row](self, typed);
    }

    const MemberIndex& members() const noexcept { return index_; }

private:
    using Call = Variant (*)(Target&, Arguments&);

    static std::vector<MemberIndex::Entry> entriesOf(std::initializer_list<Row> rows) {
        std::vector<MemberIndex::Entry> entries;
        for (const Row& row : rows) entries.push_back({row.name, row.kind, row.required, row.maximum});
        return entries;
    }
    static std::vector<Call> callsOf(std::initializer_list<Row> rows) {
        std::vector<Call> calls;
        for (const Row& row : rows) calls.push_back(row.call);
        return calls;
    }

    MemberIndex index_;
    std::vector<Call> calls_;
};

}  // namespace velmor::automation
