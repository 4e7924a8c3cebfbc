// privProperties::Sort.

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstdint>
#include <list>
#include <map>
#include <numeric>
#include <utility>

#include "automation/NumberText.h"
#include "automation/Portable.h"
#include "properties/KeyedItems.h"
#include "properties/privProperties.h"

namespace velmor {

using automation::Currency;
using automation::Decimal;
using automation::Variant;
using automation::portable::compareDecimals;
using automation::portable::toDouble;

namespace {

using Place = std::list<std::size_t>::iterator;

constexpr std::int32_t lastComparedType = 15;

// The order of values of one type.
struct SortsBefore {
    bool operator()(const Variant& left, const Variant& right) const {
        if (const auto* text = left.get<std::u16string>()) return *text < *right.get<std::u16string>();
        if (const auto* amount = left.get<Currency>()) return amount->scaled < right.get<Currency>()->scaled;
        if (const auto* number = left.get<Decimal>())
            return std::is_lt(compareDecimals(*number, *right.get<Decimal>()));
        return toDouble(left) < toDouble(right);
    }
};

// Other types, and other values, never sort after others.
bool isOrdered(const Variant& value) {
    const auto number = value.isString() ? 0 : toDouble(value);
    return number && !std::isnan(*number);
}

// The insertion among properties of one name. Of each type the placed values ascend, so a search
// finds the first one that sorts after a new one; the new one goes right before it.
class EqualNames {
public:
    explicit EqualNames(KeyedItems& items) : items_(items) {}

    void insert(std::size_t position) {
        const PropertyRef property = items_.at(position);
        if (property->ValueType() > lastComparedType) {
            insertBeforeOwnType(position, property->ValueType());
        } else if (Variant value = property->Value(); isOrdered(value)) {
            insertByValue(position, property->ValueType(), std::move(value));
        } else {
            placed_.push_back(position);
        }
    }

    const std::list<std::size_t>& placed() const { return placed_; }

private:
    void insertBeforeOwnType(std::size_t position, std::int32_t type) {
        const auto [first, isNew] = firstOfType_.try_emplace(type, placed_.end());
        first->second = placed_.insert(first->second, position);
    }

    void insertByValue(std::size_t position, std::int32_t type, Variant value) {
        auto& values = valuesOfType_[type];
        const auto after = values.upper_bound(value);
        const Place place = placed_.insert(after == values.end() ? placed_.end() : after->second, position);
        values.emplace_hint(after, std::move(value), place);
    }

    KeyedItems& items_;
    std::list<std::size_t> placed_;
    std::map<std::int32_t, std::multimap<Variant, Place, SortsBefore>> valuesOfType_;
    std::map<std::int32_t, Place> firstOfType_;
};

// The sorted order, as the present 0-based positions. It is that of an insertion one by one: before the first
// property placed that sorts after the new one, else at the end. Names alone are a strict order; the insertion
// decides only among equal names.
std::vector<std::size_t> sortedOrder(KeyedItems& items) {
    std::vector<std::size_t> order(items.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    const auto name = [&items](std::size_t position) { return items.entry(position).name; };
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return name(a) < name(b); });
    for (auto group = order.begin(); group != order.end();) {
        const auto end =
            std::find_if(group, order.end(), [&](std::size_t position) { return name(position) != name(*group); });
        if (end - group > 1) {
            EqualNames sorted(items);
            std::for_each(group, end, [&sorted](std::size_t position) { sorted.insert(position); });
            std::copy(sorted.placed().begin(), sorted.placed().end(), group);
        }
        group = end;
    }
    return order;
}

}  // namespace

void privProperties::Sort() {
    if (Count() < 2) return;
    items_ = std::make_shared<KeyedItems>(*items_, sortedOrder(*items_));
}

}  // namespace velmor
