#include "properties/KeyedItems.h"

#include <algorithm>
#include <utility>

#include "properties/PropertyEnumerator.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t kEntriesWithoutTable = 8;
constexpr std::size_t kFirstTable = 32;

}  // namespace

privProperty* KeyedItems::find(std::u16string_view key) const noexcept {
    return slots_.empty() ? findInOrder(key) : slotOf(hashIgnoringCase(key), key).property;
}

privProperty* KeyedItems::findInOrder(std::u16string_view key) const noexcept {
    for (const PropertyRef& property : *this) {
        if (property->keyed_ && equalIgnoringCase(property->Name(), key)) return property.get();
    }
    return nullptr;
}

// From both ends, so that a loop that removes by name is quick in either direction.
std::size_t KeyedItems::positionOf(const privProperty* property) const noexcept {
    const std::size_t count = size();
    for (std::size_t i = 0; i < (count + 1) / 2; ++i) {
        if (at(i).get() == property) return i;
        if (at(count - 1 - i).get() == property) return count - 1 - i;
    }
    return npos;
}

privProperty* KeyedItems::append(PropertyRef property) {
    privProperty* const owner = claimKey(property.get());
    order_.push_back(std::move(property));
    return owner;
}

privProperty* KeyedItems::insert(std::size_t position, PropertyRef property) {
    privProperty* const owner = claimKey(property.get());
    if (position == 0 && first_ > 0) {
        order_[--first_] = std::move(property);
    } else {
        order_.insert(place(position), std::move(property));
    }
    for (PropertyEnumerator* const each : enumerators_) {
        if (position < each->position_) ++each->position_;
    }
    return owner;
}

void KeyedItems::remove(std::size_t position) {
    const PropertyRef property = at(position);
    dropKey(property.get());
    if (position == 0) {
        order_[first_++].reset();
    } else {
        order_.erase(place(position));
    }
    for (PropertyEnumerator* const each : enumerators_) {
        if (position < each->position_) --each->position_;
    }
}

void KeyedItems::move(std::size_t from, std::size_t to) {
    if (from < to) {
        std::rotate(place(from), place(from) + 1, place(to) + 1);
    } else {
        std::rotate(place(to), place(from), place(from) + 1);
    }
    for (PropertyEnumerator* const each : enumerators_) {
        if (from < each->position_) --each->position_;
        if (to < each->position_) ++each->position_;
    }
}

void KeyedItems::releaseKeys() noexcept {
    for (const PropertyRef& property : *this) property->keyed_ = false;
    slots_.clear();
    keys_ = 0;
}

// The slot with the key, or the free one where it belongs.
KeyedItems::Slot& KeyedItems::slotOf(std::size_t hash, std::u16string_view key) const noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].property != nullptr &&
           (slots_[slot].hash != hash || !equalIgnoringCase(slots_[slot].property->Name(), key))) {
        slot = (slot + 1) & mask;
    }
    return slots_[slot];
}

privProperty* KeyedItems::claimKey(privProperty* property) {
    const std::u16string& name = property->Name();
    if (size() >= kEntriesWithoutTable && (keys_ + 1) * 2 > slots_.size()) growTable();
    if (slots_.empty()) {
        if (privProperty* const owner = findInOrder(name)) return owner;
    } else {
        const std::size_t hash = hashIgnoringCase(name);
        Slot& slot = slotOf(hash, name);
        if (slot.property != nullptr) return slot.property;
        slot = {hash, property};
    }
    property->keyed_ = true;
    ++keys_;
    return nullptr;
}

// Entries behind the freed slot close up, so that no search ends too early.
void KeyedItems::dropKey(privProperty* property) noexcept {
    if (!property->keyed_) return;
    property->keyed_ = false;
    --keys_;
    if (slots_.empty()) return;
    const std::size_t mask = slots_.size() - 1;
    const Slot& found = slotOf(hashIgnoringCase(property->Name()), property->Name());
    auto free = static_cast<std::size_t>(&found - slots_.data());
    for (std::size_t next = (free + 1) & mask; slots_[next].property != nullptr; next = (next + 1) & mask) {
        const std::size_t home = slots_[next].hash & mask;
        if (((next - home) & mask) < ((next - free) & mask)) continue;
        slots_[free] = slots_[next];
        free = next;
    }
    slots_[free] = {};
}

void KeyedItems::growTable() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(std::max(kFirstTable, slots_.size() * 2)));
    for (const Slot& entry : old) {
        if (entry.property != nullptr) enter(entry.property, entry.hash);
    }
    if (!old.empty()) return;
    for (const PropertyRef& property : *this) {
        if (property->keyed_) enter(property.get(), hashIgnoringCase(property->Name()));
    }
}

// The key is known to be new.
void KeyedItems::enter(privProperty* property, std::size_t hash) noexcept {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = hash & mask;
    while (slots_[slot].property != nullptr) slot = (slot + 1) & mask;
    slots_[slot] = {hash, property};
}

}  // namespace velmor
