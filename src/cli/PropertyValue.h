#pragma once

#include <optional>
#include <string>

#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor::cli {

// The values of a property file, in the same form on every system and in every locale.

// The collection that the property holds as its value; null for any other value.
const privProperties* nestedCollection(const privProperty& property);

// "Collection" for a nested one, else the automation type's name.
std::string typeName(const privProperty& property);

// "2024-03-05T14:07:09", with the separator between day and time.
std::string dateText(automation::Date date, char separator);

// The bytes of a picture in base64; nothing for every other value.
std::optional<std::string> pictureBase64(platform::Services& services, const automation::Variant& value);

}  // namespace velmor::cli
