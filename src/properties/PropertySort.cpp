#include "properties/PropertySort.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "automation/Convert.h"
#include "automation/DecimalNumber.h"

namespace velmor {

using automation::Variant;

namespace {

struct DecimalValue {
    automation::Decimal value;
    bool operator<(const DecimalValue& other) const {
        return automation::portable::compareDecimals(value, other.value) < 0;
    }
};
using Value = std::variant<double, std::int64_t, std::u16string, DecimalValue>;
using Place = std::list<PropertyRef>::iterator;

constexpr std::int32_t kLastComparedType = 15;

// What values of one type are compared by; nothing for types and values that never sort after
// another one.
std::optional<Value> valueOf(const privProperty& property) {
    const Variant value = property.Value();
    if (const auto* text = value.get<std::u16string>()) return *text;
    if (const auto* amount = value.get<automation::Currency>()) return amount->scaled;
    if (const auto* decimal = value.get<automation::Decimal>()) return DecimalValue{*decimal};
    if (const auto* date = value.get<automation::Date>()) {
        return std::isnan(date->days) ? std::nullopt : std::optional<Value>(date->days);
    }
    const bool numeric = value.get<std::int16_t>() != nullptr || value.get<std::int32_t>() != nullptr ||
                         value.get<float>() != nullptr || value.get<double>() != nullptr ||
                         value.get<bool>() != nullptr;
    const auto number = numeric ? automation::toDouble(value) : std::nullopt;
    return !number || std::isnan(*number) ? std::nullopt : std::optional<Value>(*number);
}

// The insertion among properties of one name. Of each type the values placed ascend, so the first
// one that sorts after a new one is found by search; a new one goes right before it.
class EqualNames {
public:
    void insert(const PropertyRef& property) {
        if (property->ValueType() > kLastComparedType) {
            insertBeforeOwnType(property);
        } else if (auto value = valueOf(*property)) {
            insertByValue(property, *std::move(value));
        } else {
            placed_.push_back(property);
        }
    }

    const std::list<PropertyRef>& placed() const { return placed_; }

private:
    void insertBeforeOwnType(const PropertyRef& property) {
        const auto [first, isNew] = firstOfType_.try_emplace(property->ValueType(), placed_.end());
        first->second = placed_.insert(first->second, property);
    }

    void insertByValue(const PropertyRef& property, Value value) {
        auto& values = valuesOfType_[property->ValueType()];
        const auto after = values.upper_bound(value);
        const Place place = placed_.insert(after == values.end() ? placed_.end() : after->second, property);
        values.emplace_hint(after, std::move(value), place);
    }

    std::list<PropertyRef> placed_;
    std::map<std::int32_t, std::multimap<Value, Place>> valuesOfType_;
    std::map<std::int32_t, Place> firstOfType_;
};

}  // namespace

// Names alone are a strict order; only among equal names does the insertion have a say.
std::vector<PropertyRef> sortedProperties(std::vector<PropertyRef> properties) {
    const auto byName = [](const PropertyRef& a, const PropertyRef& b) { return a->nameView() < b->nameView(); };
    std::stable_sort(properties.begin(), properties.end(), byName);
    for (auto group = properties.begin(); group != properties.end();) {
        const auto end = std::find_if(group, properties.end(), [group](const PropertyRef& each) {
            return each->nameView() != (*group)->nameView();
        });
        if (end - group > 1) {
            EqualNames sorted;
            std::for_each(group, end, [&sorted](const PropertyRef& each) { sorted.insert(each); });
            std::copy(sorted.placed().begin(), sorted.placed().end(), group);
        }
        group = end;
    }
    return properties;
}

}  // namespace velmor
