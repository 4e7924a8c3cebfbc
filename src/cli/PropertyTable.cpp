#include <algorithm>
#include <vector>

#include "automation/Portable.h"
#include "cli/LineText.h"
#include "cli/PropertyListing.h"
#include "cli/PropertyValue.h"
#include "cli/Streams.h"
#include "properties/PropertyEnumerator.h"
#include "text/Encoding.h"

namespace velmor::cli {
namespace {

constexpr std::size_t widestName = 40;
constexpr std::size_t longestText = 72;

struct Row {
    std::u16string name, type, value;
};

class Table {
public:
    explicit Table(platform::Services& services) : services_(services) {}

    bool write(const privProperties& collection) {
        add(collection, u"", 0);
        std::size_t width = 4;
        for (const Row& row : rows_) width = std::max(width, std::min(row.name.size(), widestName));
        rows_.insert(rows_.begin(), {u"NAME", u"TYPE", u"VALUE"});
        for (const Row& row : rows_) {
            std::u16string line = padded(row.name, width) + u"  " + padded(row.type, 10) + u"  " + row.value;
            line.erase(line.find_last_not_of(u' ') + 1);
            print(toUtf8(line) + "\n");
        }
        finishPrinting();
        return complete_;
    }

private:
    void add(const privProperties& collection, const std::u16string& prefix, int level) {
        if (level > privProperties::maximumNesting) {
            complete_ = false;
            return;
        }
        const auto each = collection.NewEnum();
        while (const PropertyRef property = each->next()) add(*property, prefix, level);
    }

    void add(privProperty& property, const std::u16string& prefix, int level) {
        const privProperties* const nested = nestedCollection(property);
        rows_.push_back(
            {prefix + onOneLine(property.Name(), longestText), fromUtf8(typeName(property)), value(property)});
        const std::u16string inner = std::u16string(2 * static_cast<std::size_t>(level) + 2, u' ');
        if (nested != nullptr) add(*nested, inner, level + 1);
        if (property.HasAttributes()) add(*property.Attributes(), inner + u"@", level + 1);
        if (property.HasProperties()) add(*property.Properties(), inner + u"+", level + 1);
    }

    std::u16string value(const privProperty& property) {
        const automation::Variant& value = property.rawValue();
        if (const auto* text = value.get<std::u16string>()) return onOneLine(*text, longestText);
        if (const auto* date = value.get<automation::Date>()) return fromUtf8(dateText(*date, ' '));
        if (const auto* nested = nestedCollection(property)) return count(nested->Count(), u"property", u"properties");
        if (const auto picture = pictureBase64(services_, value)) {
            const auto padding = std::count(picture->begin(), picture->end(), '=');
            return count(static_cast<std::int64_t>(picture->size()) / 4 * 3 - padding, u"byte", u"bytes");
        }
        return automation::portable::toText(value).value_or(std::u16string());
    }

    static std::u16string count(std::int64_t number, std::u16string_view one, std::u16string_view many) {
        return u"(" + fromUtf8(std::to_string(number)) + u" " + std::u16string(number == 1 ? one : many) + u")";
    }

    platform::Services& services_;
    std::vector<Row> rows_;
    bool complete_ = true;
};

}  // namespace

bool printPropertyTable(platform::Services& services, const privProperties& collection) {
    return Table(services).write(collection);
}

}  // namespace velmor::cli
