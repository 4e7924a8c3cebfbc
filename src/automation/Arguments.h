#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "automation/Variant.h"

namespace velmor::automation {

// What a late-bound member was called with, typed. Indices are 0-based. The plain getters raise
// error 13 when the argument does not convert; so do the ...Or getters when it is there and does
// not convert, but one that was left out gives the default. The index of a plain getter must be
// one that the member's table row declares as required.
class Arguments {
public:
    explicit Arguments(std::span<Variant> values) noexcept : values_(values) {}

    std::size_t count() const noexcept { return values_.size(); }
    // False for an argument that was left out, at the end or as Variant::missing.
    bool has(std::size_t index) const noexcept;

    // The argument itself; Variant::missing when it was left out.
    const Variant& variant(std::size_t index) const noexcept;
    Variant variantOr(std::size_t index, Variant otherwise) const;

    std::u16string text(std::size_t index) const;
    std::u16string textOr(std::size_t index, std::u16string_view otherwise) const;
    std::int32_t longInteger(std::size_t index) const;
    std::int32_t longOr(std::size_t index, std::int32_t otherwise) const;
    std::int16_t integer(std::size_t index) const;
    std::int16_t integerOr(std::size_t index, std::int16_t otherwise) const;
    double doubleFloat(std::size_t index) const;
    double doubleOr(std::size_t index, double otherwise) const;
    float single(std::size_t index) const;
    Date date(std::size_t index) const;
    bool boolean(std::size_t index) const;
    bool boolean(std::size_t index, bool otherwise) const;

    // The object; null for Nothing and for an argument left out. Raises 13 for any other value.
    ObjectRef object(std::size_t index) const;

    // By-reference arguments: what the caller finds in its variable afterwards. Without effect on
    // an argument that was left out at the end.
    void set(std::size_t index, Variant value);
    void setText(std::size_t index, std::u16string value) { set(index, Variant(std::move(value))); }
    void setLong(std::size_t index, std::int32_t value) { set(index, Variant(value)); }

    // The new value of a let or set: the last argument.
    const Variant& newValue() const noexcept { return variant(count() - 1); }

private:
    std::span<Variant> values_;
};

}  // namespace velmor::automation
