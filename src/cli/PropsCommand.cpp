#include <algorithm>
#include <memory>
#include <vector>

#include "automation/Portable.h"
#include "cli/Commands.h"
#include "cli/JsonText.h"
#include "cli/LineText.h"
#include "cli/PropertyValue.h"
#include "cli/Streams.h"
#include "properties/PropertyEnumerator.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

using automation::Variant;

constexpr std::size_t widestName = 40;
constexpr std::size_t longestText = 72;

struct Row {
    std::u16string name, type, value;
};

std::u16string countText(std::int64_t number, std::u16string_view one, std::u16string_view many) {
    return u"(" + fromUtf8(std::to_string(number)) + u" " + std::u16string(number == 1 ? one : many) + u")";
}

// The number that the digits of a single spell: 0.1, not 0.10000000149.
Json decimalOf(const Variant& value) {
    const auto text = automation::portable::toText(value);
    const auto number = text ? automation::portable::parseNumber(*text) : std::nullopt;
    return number ? Json(*number) : Json(nullptr);
}

// Prints a collection with attributes, child properties and nested collections.
class Listing {
public:
    explicit Listing(platform::Services& services) : services_(services) {}

    // False when deeper levels were left out.
    bool isComplete() const noexcept { return complete_; }

    // A line for each property: name, type and value. Attributes are marked "@" and child properties "+".
    void printTable(const privProperties& collection) {
        addRows(collection, u"", 0);
        std::size_t width = 4;
        for (const Row& row : rows_) width = std::max(width, std::min(row.name.size(), widestName));
        rows_.insert(rows_.begin(), {u"NAME", u"TYPE", u"VALUE"});
        for (const Row& row : rows_) {
            std::u16string line = padded(row.name, width) + u"  " + padded(row.type, 10) + u"  " + row.value;
            line.erase(line.find_last_not_of(u' ') + 1);
            print(toUtf8(line) + "\n");
        }
        finishPrinting();
    }

    // One line for each property of the collection.
    void printJson(const privProperties& collection) {
        JsonList list("properties");
        forEach(collection, 0, [&](privProperty& property) { list.add(entry(property, 0)); });
        list.end();
    }

private:
    template <class Take>
    void forEach(const privProperties& collection, int level, Take take) {
        if (level > privProperties::maximumNesting) {
            complete_ = false;
            return;
        }
        const auto each = collection.NewEnum();
        while (const PropertyRef property = each->next()) take(*property);
    }

    void addRows(const privProperties& collection, const std::u16string& prefix, int level) {
        forEach(collection, level, [&](privProperty& property) { addRows(property, prefix, level); });
    }

    void addRows(privProperty& property, const std::u16string& prefix, int level) {
        const privProperties* const nested = nestedCollection(property);
        rows_.push_back(
            {prefix + onOneLine(property.Name(), longestText), fromUtf8(typeName(property)), shownValue(property)});
        const std::u16string inner = std::u16string(2 * static_cast<std::size_t>(level) + 2, u' ');
        if (nested != nullptr) addRows(*nested, inner, level + 1);
        if (property.HasAttributes()) addRows(*property.Attributes(), inner + u"@", level + 1);
        if (property.HasProperties()) addRows(*property.Properties(), inner + u"+", level + 1);
    }

    std::u16string shownValue(const privProperty& property) const {
        const Variant& value = property.rawValue();
        if (const auto* text = value.get<std::u16string>()) return onOneLine(*text, longestText);
        if (const auto* date = value.get<automation::Date>()) return fromUtf8(dateText(*date, ' '));
        if (const auto* nested = nestedCollection(property)) {
            return countText(nested->Count(), u"property", u"properties");
        }
        if (const auto picture = pictureBase64(services_, value)) {
            const auto padding = std::count(picture->begin(), picture->end(), '=');
            return countText(static_cast<std::int64_t>(picture->size()) / 4 * 3 - padding, u"byte", u"bytes");
        }
        return automation::portable::toText(value).value_or(std::u16string());
    }

    Json entries(const privProperties& collection, int level) {
        Json list = Json::array();
        forEach(collection, level, [&](privProperty& property) { list.push_back(entry(property, level)); });
        return list;
    }

    Json entry(privProperty& property, int level) {
        Json made = {{"name", toUtf8(property.Name())}, {"type", typeName(property)}};
        made["value"] = valueJson(property, level);
        if (property.Encoding() != 0) made["encoding"] = property.Encoding();
        if (property.HasAttributes()) made["attributes"] = entries(*property.Attributes(), level + 1);
        if (property.HasProperties()) made["properties"] = entries(*property.Properties(), level + 1);
        return made;
    }

    Json valueJson(const privProperty& property, int level) {
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

    platform::Services& services_;
    std::vector<Row> rows_;
    bool complete_ = true;
};

}  // namespace

ExitCode runProps(platform::Services& services, const PropsOptions& options) {
    const auto collection = std::make_shared<privProperties>(services);
    readPropertyFile(*collection, services.files, options.file);
    Listing listing(services);
    options.json ? listing.printJson(*collection) : listing.printTable(*collection);
    if (listing.isComplete()) return exitDone;
    report(inputName(options.file.name) + ": more than " + std::to_string(privProperties::maximumNesting) +
           " levels of nesting; the deeper ones are not listed");
    return exitReported;
}

}  // namespace velmor::cli
