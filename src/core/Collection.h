#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "automation/Object.h"
#include "automation/Variant.h"

namespace velmor {

class privProperties;

// The property collection of a tag: our own class, called directly, or a host's object, called by member name.
// Copies refer to the same collection. A failing member of a host's collection counts as an absent entry;
// nothing here raises.
class Collection {
public:
    Collection() = default;  // none
    explicit Collection(std::shared_ptr<privProperties> collection);
    // Either kind; none for a null reference.
    Collection(const automation::ObjectRef& object);

    explicit operator bool() const noexcept { return own_ != nullptr || foreign_ != nullptr; }
    // The given object; null for none.
    automation::ObjectRef object() const;
    operator automation::ObjectRef() const { return object(); }
    // Our own class; null for none or a host's object.
    const std::shared_ptr<privProperties>& own() const noexcept { return own_; }

    std::int32_t Count() const;
    // The value of the property of that name; nothing if it is absent.
    std::optional<automation::Variant> find(std::u16string_view psName) const;
    // The value of that property, else the default.
    automation::Variant get(std::u16string_view psName, const automation::Variant& pvDefault) const;
    std::u16string getText(std::u16string_view psName, const automation::Variant& pvDefault) const;
    // The text of that property: its own until it changes, or `buffer`, which receives it. Nothing if the property
    // is absent or the collection is the host's.
    std::optional<std::u16string_view> textOf(std::u16string_view psName, std::u16string& buffer) const;
    // The length of the property's text; 0 if it is not a text, or the collection is the host's.
    std::size_t textLength(std::u16string_view psName) const;
    bool truth(std::u16string_view psName, bool pbDefault) const;
    // Adds or replaces; false when the host's collection refused.
    bool put(std::u16string_view psName, automation::Variant value) const;
    void Dispose() const;

    bool operator==(const Collection& other) const noexcept { return own_ == other.own_ && foreign_ == other.foreign_; }

private:
    std::shared_ptr<privProperties> own_;
    automation::ObjectRef foreign_;
};

}  // namespace velmor
