#include "cli/PropertyValue.h"

#include <array>
#include <cstdio>

#include "automation/Convert.h"
#include "properties/PictureText.h"
#include "text/Encoding.h"

namespace velmor::cli {

const privProperties* nestedCollection(const privProperty& property) {
    return dynamic_cast<const privProperties*>(property.rawValue().object().get());
}

std::string typeName(const privProperty& property) {
    return nestedCollection(property) != nullptr ? "Collection" : toUtf8(property.ValueTypeName());
}

std::string dateText(automation::Date date, char separator) {
    const automation::DateFields fields = automation::dateFields(date);
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d%c%02d:%02d:%02d", fields.year, fields.month, fields.day,
                  separator, fields.hour, fields.minute, fields.second);
    return text.data();
}

std::optional<std::string> pictureBase64(platform::Services& services, const automation::Variant& value) {
    const std::string text = toUtf8(PictureToText(services, value));
    const auto begin = text.find('"') + 1, end = text.rfind('"');
    if (text.empty()) return std::nullopt;
    return text.substr(begin, end - begin);
}

}  // namespace velmor::cli
