#include "automation/Portable.h"
#include "cli/JsonText.h"
#include "cli/PropertyListing.h"
#include "cli/PropertyValue.h"
#include "properties/PropertyEnumerator.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

class Writer {
public:
    explicit Writer(platform::Services& services) : services_(services) {}

    bool write(const privProperties& collection) {
        JsonList list("properties");
        const auto each = collection.NewEnum();
        while (const PropertyRef property = each->next()) list.add(entry(*property, 0));
        list.end();
        return complete_;
    }

private:
    Json value(const privProperty& property, int level) {
        const Variant& value = property.rawValue();
        if (const auto* number = value.get<std::int32_t>()) return *number;
        if (const auto* number = value.get<std::int16_t>()) return *number;
        if (const auto* number = value.get<double>()) return *number;
        if (value.get<float>() != nullptr) return decimalOf(value);
        if (const auto* flag = value.get<bool>()) return *flag;
        if (const auto* date = value.get<automation::Date>()) return dateText(*date, 'T');
        if (const auto* nested = nestedCollection(property)) return entries(*nested, level + 1);
        if (auto picture = pictureBase64(services_, value)) return *std::move(picture);
        const auto text = automation::portable::toText(value);
        return text ? Json(toUtf8(*text)) : Json(nullptr);
    }

    Json entries(const privProperties& collection, int level) {
        Json list = Json::array();
        if (level > privProperties::maximumNesting) {
            complete_ = false;
            return list;
        }
        const auto each = collection.NewEnum();
        while (const PropertyRef property = each->next()) list.push_back(entry(*property, level));
        return list;
    }

    Json entry(privProperty& property, int level) {
        Json made = {{"name", toUtf8(property.Name())}, {"type", typeName(property)}};
        made["value"] = value(property, level);
        if (property.Encoding() != 0) made["encoding"] = property.Encoding();
        if (property.HasAttributes()) made["attributes"] = entries(*property.Attributes(), level + 1);
        if (property.HasProperties()) made["properties"] = entries(*property.Properties(), level + 1);
        return made;
    }

    // The number that the digits of a single spell: 0.1, not 0.10000000149.
    static Json decimalOf(const Variant& value) {
        const auto text = automation::portable::toText(value);
        const auto number = text ? automation::portable::parseNumber(*text) : std::nullopt;
        return number ? Json(*number) : Json(nullptr);
    }

    platform::Services& services_;
    bool complete_ = true;
};

}  // namespace

bool printPropertyJson(platform::Services& services, const privProperties& collection) {
    return Writer(services).write(collection);
}

}  // namespace velmor::cli
