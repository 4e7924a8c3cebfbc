#pragma once

#include <string>
#include <string_view>

#include "properties/KeyedItems.h"
#include "properties/privProperties.h"

namespace velmor {

// Writes a collection as text: one entry a property, name, "=", value and ":", followed by an
// entry of the same name for its attributes and one for its children, where it has some.
class PropertyWriter {
public:
    using Form = privProperties::TextForm;

    // The level is that of the collection within the one that is written.
    PropertyWriter(platform::Services& services, Form form, int level);

    std::u16string write(const KeyedItems& items);

private:
    enum class Child { attributes, properties };

    void writeEntry(const privProperty& property);
    void writeName(std::u16string_view name);
    void writeChildren(const privProperty& property);
    void writeValue(const privProperty& property);
    void writeObject(const automation::Variant& value);
    void writeDate(automation::Date date);
    void writeNumber(const automation::Variant& value, std::u16string_view suffix);
    void writeText(std::u16string_view text, std::int32_t encoding);
    void writeSubstituted(std::u16string_view text);
    void writeBase64(std::u16string_view text);
    void appendNested(std::u16string_view text);
    void writeChild(std::u16string_view name, std::u16string_view text, Child which);

    platform::Services& services_;
    const bool asTag_;
    const bool delimited_;
    const int level_;
    std::u16string out_;
};

}  // namespace velmor
