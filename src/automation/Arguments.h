#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "automation/Convert.h"

namespace velmor::automation {

// A text for a member that reads it, or keeps it. A view is not copied; what it views must outlive this.
class TextArgument {
public:
    explicit TextArgument(std::u16string_view text) noexcept : text_(text) {}
    explicit TextArgument(std::u16string converted) noexcept : converted_(std::move(converted)) {}

    operator std::u16string_view() const noexcept { return converted_ ? *converted_ : text_; }
    operator std::u16string() const { return std::u16string(std::u16string_view(*this)); }

private:
    std::u16string_view text_;
    std::optional<std::u16string> converted_;
};

// A by-reference text for a member that reads it, or changes it in place.
class TextReference {
public:
    explicit TextReference(TextArgument given) noexcept : given_(std::move(given)) {}

    operator std::u16string_view() const noexcept { return lent_ ? text_ : std::u16string_view(given_); }
    operator std::u16string&() {
        text_ = given_;
        lent_ = true;
        return text_;
    }

    // What the member that changes it made of it; null after one that reads it.
    std::u16string* made() noexcept { return lent_ ? &text_ : nullptr; }

private:
    TextArgument given_;
    std::u16string text_;
    bool lent_ = false;
};

// What a late-bound member was called with, typed. Indices are 0-based. An argument that does not convert raises an
// ArgumentError: 6 for a number that is out of range, else 13. The ...Or getters give the default for one that was left
// out. The index of a plain getter must be one that the member's table row declares as required.
class Arguments {
public:
    explicit Arguments(std::span<Variant> values) noexcept : values_(values) {}

    std::size_t count() const noexcept { return values_.size(); }
    // False for an argument that was left out, at the end or as Variant::missing.
    bool has(std::size_t index) const noexcept;

    // The argument itself; Variant::missing when it was left out.
    const Variant& variant(std::size_t index) const noexcept;

    std::u16string text(std::size_t index) const { return textArgument(index); }
    TextArgument textArgument(std::size_t index) const;  // views the argument where that is a text
    std::int32_t longInteger(std::size_t index) const { return fit(index, toLong); }
    std::int32_t longOr(std::size_t index, std::int32_t otherwise) const {
        return has(index) ? longInteger(index) : otherwise;
    }
    std::int16_t integer(std::size_t index) const { return fit(index, toInteger); }
    double doubleFloat(std::size_t index) const { return fit(index, toDouble); }
    float single(std::size_t index) const { return fit(index, toSingle); }
    Date date(std::size_t index) const { return fit(index, toDate); }
    bool boolean(std::size_t index) const { return fit(index, toBoolean); }

    // The object; null for Nothing, for Null and for an argument left out.
    ObjectRef object(std::size_t index) const;

    // By-reference arguments: what the caller finds in its variable afterwards. Without effect on
    // an argument that was left out at the end.
    void set(std::size_t index, Variant value);
    // The same after a member that may have changed it. An argument of another type keeps that while its value is the
    // same: a number that was passed where a text is declared stays a number.
    void putBack(std::size_t index, TextReference& text);
    void putBack(std::size_t index, std::int32_t number);

    // The new value of a let or set: the last argument.
    const Variant& newValue() const noexcept { return variant(count() - 1); }

private:
    template <class T>
    T fit(std::size_t index, std::optional<T> (*convert)(const Variant&)) const {
        std::optional<T> converted = convert(variant(index));
        if (!converted) raiseUnfit(index);
        return *std::move(converted);
    }
    [[noreturn]] void raiseUnfit(std::size_t index) const;

    std::span<Variant> values_;
};

}  // namespace velmor::automation
