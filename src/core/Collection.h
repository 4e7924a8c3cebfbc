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

// A property collection as a tag holds it: our own class, called directly, or an object that the
// host supplied, called by member name. Copies refer to the same collection. A member of a foreign
// collection that fails counts as a missing entry; nothing here raises.
class Collection {
public:
    Collection() = default;  // none
    explicit Collection(std::shared_ptr<privProperties> collection);
    // Either kind; a null reference gives none.
    Collection(const automation::ObjectRef& object);

    explicit operator bool() const noexcept { return own_ != nullptr || foreign_ != nullptr; }
    // The very object that was given; null for none.
    automation::ObjectRef object() const;
    operator automation::ObjectRef() const { return object(); }
    // Our own class; null when there is none or it is the host's.
    const std::shared_ptr<privProperties>& own() const noexcept { return own_; }

    std::int32_t Count() const;
    // The value of the property of that name; nothing when there is no such property.
    std::optional<automation::Variant> find(std::u16string_view psName) const;
    // The value of that property, else the default.
    automation::Variant get(std::u16string_view psName, const automation::Variant& pvDefault) const;
    std::u16string getText(std::u16string_view psName, const automation::Variant& pvDefault) const;
    // Appends the text of that property without a copy on the way; false, and nothing appended,
    // when there is none or the collection is the host's.
    bool appendText(std::u16string_view psName, std::u16string& target) const;
    // Of the property's text; 0 when it is no text, or the collection is the host's.
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
