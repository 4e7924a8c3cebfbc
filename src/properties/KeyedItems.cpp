#include "properties/KeyedItems.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "properties/PropertyEnumerator.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::size_t kEntriesWithoutTable = 8;
constexpr std::size_t kFirstTable = 32;

std::uint32_t hashOf(std::u16string_view key) noexcept {
    return static_cast<std::uint32_t>(hashIgnoringCase(key));
}

// Names that count up differ in a few low bits only; multiplied, they spread over the whole table.
std::size_t home(std::uint32_t hash, std::size_t mask) noexcept {
    return static_cast<std::size_t>(hash * 0x9E3779B97F4A7C15 >> 32) & mask;
}

std::uint8_t tagOf(std::uint32_t hash) noexcept {
    return static_cast<std::uint8_t>(hash >> 24 | 0x80);
}

}  // namespace

privProperty* KeyedItems::find(std::u16string_view key) const noexcept {
    if (tags_.empty()) return findInOrder(key);
    const std::size_t slot = slotOf(hashOf(key), key);
    return tags_[slot] == 0 ? nullptr : keyedAt_[slot];
}

privProperty* KeyedItems::findInOrder(std::u16string_view key) const noexcept {
    for (const PropertyRef& property : *this) {
        if (property->keyed_ && equalIgnoringCase(property->nameView(), key)) return property.get();
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

KeyedItems::Hash KeyedItems::announce(std::u16string_view key) const noexcept {
    if (tags_.empty()) return std::nullopt;
    const std::uint32_t hash = hashOf(key);
    const std::size_t slot = home(hash, tags_.size() - 1);
    __builtin_prefetch(&tags_[slot]);
    __builtin_prefetch(&keyedAt_[slot], 1);
    return hash;
}

privProperty* KeyedItems::append(PropertyRef property, Hash hash) {
    makeRoom(false);
    privProperty* const owner = claimKey(property.get(), hash);
    order_.push_back(std::move(property));
    return owner;
}

privProperty* KeyedItems::insert(std::size_t position, PropertyRef property) {
    const bool nearFront = isNearFront(position);
    makeRoom(nearFront);
    privProperty* const owner = claimKey(property.get(), std::nullopt);
    if (nearFront) {
        std::move(place(0), place(position), place(0) - 1);
        --first_;
        *place(position) = std::move(property);
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
    if (isNearFront(position)) {
        std::move_backward(place(0), place(position), place(position) + 1);
        order_[first_++].reset();
    } else {
        order_.erase(place(position));
    }
    for (PropertyEnumerator* const each : enumerators_) {
        if (position < each->position_) --each->position_;
    }
}

// For one more entry at that end. The room doubles with the entries; the other end keeps its own, up
// to as much.
void KeyedItems::makeRoom(bool inFront) {
    if (inFront ? first_ > 0 : order_.size() < order_.capacity()) return;
    const std::size_t room = size() + 1;
    const std::size_t front = inFront ? room : std::min(first_, room);
    const std::size_t back = inFront ? std::min(order_.capacity() - order_.size(), room) : room;
    std::vector<PropertyRef> wider;
    wider.reserve(front + size() + back);
    wider.resize(front);
    wider.insert(wider.end(), std::move_iterator(place(0)), std::move_iterator(order_.end()));
    order_.swap(wider);
    first_ = front;
}

void KeyedItems::arrange(std::vector<PropertyRef> order) noexcept {
    order_.swap(order);
    first_ = 0;
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
    tags_.clear();
    keyedAt_.clear();
    keys_ = 0;
}

// The slot with the key, or the free one where it belongs.
std::size_t KeyedItems::slotOf(std::uint32_t hash, std::u16string_view key) const noexcept {
    const std::size_t mask = tags_.size() - 1;
    const std::uint8_t tag = tagOf(hash);
    std::size_t slot = home(hash, mask);
    for (; tags_[slot] != 0; slot = (slot + 1) & mask) {
        if (tags_[slot] != tag || keyedAt_[slot]->keyHash_ != hash) continue;
        if (equalIgnoringCase(keyedAt_[slot]->nameView(), key)) break;
    }
    return slot;
}

privProperty* KeyedItems::claimKey(privProperty* property, Hash hash) {
    const std::u16string_view name = property->nameView();
    if (size() >= kEntriesWithoutTable && (keys_ + 1) * 5 > tags_.size() * 4) {
        growTable(std::max(kFirstTable, tags_.size() * 2));
    }
    if (tags_.empty()) {
        if (privProperty* const owner = findInOrder(name)) return owner;
    } else {
        property->keyHash_ = hash ? *hash : hashOf(name);
        const std::size_t slot = slotOf(property->keyHash_, name);
        if (tags_[slot] != 0) return keyedAt_[slot];
        tags_[slot] = tagOf(property->keyHash_);
        keyedAt_[slot] = property;
    }
    property->keyed_ = true;
    ++keys_;
    return nullptr;
}

// Entries after the freed slot move up, so that no search ends too early.
void KeyedItems::dropKey(privProperty* property) noexcept {
    if (!property->keyed_) return;
    property->keyed_ = false;
    --keys_;
    if (tags_.empty()) return;
    const std::size_t mask = tags_.size() - 1;
    std::size_t free = slotOf(property->keyHash_, property->nameView());
    for (std::size_t next = (free + 1) & mask; tags_[next] != 0; next = (next + 1) & mask) {
        const std::size_t wanted = home(keyedAt_[next]->keyHash_, mask);
        if (((next - wanted) & mask) < ((next - free) & mask)) continue;
        tags_[free] = tags_[next];
        keyedAt_[free] = keyedAt_[next];
        free = next;
    }
    tags_[free] = 0;
}

void KeyedItems::reserve(std::size_t count) {
    order_.reserve(first_ + count);
    const std::size_t slots = std::bit_ceil(count * 5 / 4 + 1);
    if (count > kEntriesWithoutTable && slots > tags_.size()) growTable(slots);
}

void KeyedItems::growTable(std::size_t size) {
    const bool isFirst = tags_.empty();
    std::vector<std::uint8_t> tags(size);
    std::vector<privProperty*> keyedAt(size);
    tags_.swap(tags);
    keyedAt_.swap(keyedAt);
    for (const PropertyRef& property : *this) {
        if (!property->keyed_) continue;
        if (isFirst) property->keyHash_ = hashOf(property->nameView());
        enter(property.get());
    }
}

// The key is known to be new.
void KeyedItems::enter(privProperty* property) noexcept {
    const std::size_t mask = tags_.size() - 1;
    std::size_t slot = home(property->keyHash_, mask);
    while (tags_[slot] != 0) slot = (slot + 1) & mask;
    tags_[slot] = tagOf(property->keyHash_);
    keyedAt_[slot] = property;
}

}  // namespace velmor
