#pragma once

#include <gtest/gtest.h>

#include <string>

#include "automation/Convert.h"
#include "platform/MemoryServices.h"
#include "properties/KeyedItems.h"
#include "properties/PropertyEnumerator.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"
#include "text/privStrCat.h"

namespace velmor {

// A value as tests write it: its type and its text, "Long 5".
inline std::string describe(const automation::Variant& value) {
    std::u16string text = automation::typeNameOf(value);
    if (value.isObject() || value.isEmpty() || value.get<automation::Null>() != nullptr) return toUtf8(text);
    return toUtf8(text + u" " + automation::toText(value).value_or(u"?"));
}

// A property with everything that its text form carries.
inline std::string describe(privProperty& property) {
    std::string all = toUtf8(property.Name()) + "=";
    const auto* nested = dynamic_cast<privProperties*>(property.Value().object().get());
    all += nested != nullptr ? "[" + toUtf8(nested->Stored()) + "]" : describe(property.Value());
    if (property.Encoding() != 0) all += " e" + std::to_string(property.Encoding());
    if (property.HasAttributes()) all += " @{" + toUtf8(property.Attributes()->Stored()) + "}";
    if (property.HasProperties()) all += " {" + toUtf8(property.Properties()->Stored()) + "}";
    return all;
}

// All properties, separated by " | ".
inline std::string describe(const privProperties& collection) {
    std::string all;
    const auto each = collection.NewEnum();
    while (const PropertyRef one = each->next()) all += (all.empty() ? "" : " | ") + describe(*one);
    return all;
}

inline std::string names(const privProperties& collection) {
    std::string all;
    const auto each = collection.NewEnum();
    while (const PropertyRef one = each->next()) all += (all.empty() ? "" : " ") + toUtf8(one->Name());
    return all;
}

inline PropertiesRef newProperties(platform::Services& services) {
    return std::make_shared<privProperties>(services);
}

// A machine, and a collection on it.
class PropertyTest : public testing::Test {
protected:
    platform::MemoryServices services;
    PropertiesRef collection = newProperties(services);
};

}  // namespace velmor
