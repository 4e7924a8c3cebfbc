#pragma once

#include <string>
#include <string_view>

#include "properties/KeyedItems.h"
#include "properties/privProperties.h"

namespace velmor {

// Writes a collection as text: an entry of name, "=", value and ":" for each property, followed by an
// entry of the same name for its attributes and one for its children, if it has any.
class PropertyWriter {
public:
    using Form = privProperties::TextForm;

    // level: how many collections the written one is nested in.
    PropertyWriter(platform::Services& services, Form form, int level);

    std::u16string write(const KeyedItems& items);

private:
    using Child = privProperty::Child;

    void writeEntry(const KeyedItems::Entry& entry);
    void writeProperty(const privProperty& property);
    void writeChildren(const privProperty& property);
    void writeValue(const automation::Variant& value, std::int32_t encoding);
    bool writeTyped(const automation::Variant& value);
    void writeObject(const automation::Variant& value);
    void writeDate(automation::Date date);
    void writeNumber(const automation::Variant& value, std::u16string_view suffix);
    void writeText(std::u16string_view text, std::int32_t encoding);
    void writeEncoded(std::u16string_view marker, std::u16string_view encoded);
    void appendNested(std::u16string_view text);
    void writeChild(std::u16string_view name, std::u16string_view text, Child which);

    platform::Services& services_;
    const bool asTag_;
    const bool delimited_;
    const int level_;
    std::u16string out_;
};

}  // namespace velmor
