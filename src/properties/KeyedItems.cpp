#include "properties/KeyedItems.h"

#include <algorithm>
#include <utility>

#include "platform/Services.h"
#include "properties/PropertyEnumerator.h"
#include "properties/Substitution.h"
#include "properties/TypedText.h"

namespace velmor {

using automation::Date;
using automation::Variant;

namespace {

constexpr std::size_t mostWithoutIndex = 8;

}  // namespace

Variant KeyedItems::Entry::unreadValue() const {
    if (spelling == Spelling::unquoted) return typedValue(value);
    return spelling == Spelling::quoted ? Variant(value) : Variant(withoutSubstitute(value));
}

KeyedItems::KeyedItems(KeyedItems& other, const std::vector<std::size_t>& order) : services_(other.services_) {
    for (std::size_t i = 0; i < other.size(); ++i) {
        const PropertyRef property = other.at(i);
        place(i, {property, nullptr, property->Name(), {}});
    }
    for (Entry* const entry : order_) claimKey(*entry);
    std::deque<Entry*> sorted;
    for (const std::size_t position : order) sorted.push_back(order_[position]);
    order_.swap(sorted);
    claimed_ = order_.size();
}

PropertyRef KeyedItems::at(std::size_t position) {
    claimKeys();
    return made(*order_[position]);
}

PropertyRef KeyedItems::find(std::u16string_view key) {
    claimKeys();
    Entry* const found = keyedEntry(key);
    return found == nullptr ? nullptr : made(*found);
}

// From both ends, so that a loop that removes by name is quick in either direction.
std::size_t KeyedItems::positionOf(std::u16string_view key) {
    claimKeys();
    const Entry* const found = keyedEntry(key);
    const std::size_t count = found == nullptr ? 0 : size();
    for (std::size_t i = 0; i < (count + 1) / 2; ++i) {
        if (order_[i] == found) return i;
        if (order_[count - 1 - i] == found) return count - 1 - i;
    }
    return npos;
}

PropertyRef KeyedItems::insert(std::size_t position, std::u16string_view name, Variant value) {
    claimKeys();
    Entry& entry = place(position, newEntry(std::u16string(name), std::move(value), services_.clock.now()));
    try {
        markOwner(claimKey(entry));
    } catch (...) {
        order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position));
        throw;
    }
    ++claimed_;
    for (PropertyEnumerator* const each : enumerators_) {
        if (position < each->position_) ++each->position_;
    }
    return entry.property;
}

void KeyedItems::remove(std::size_t position) {
    claimKeys();
    unused_.push_back(order_[position]);
    const Entry removed = std::exchange(*order_[position], {});  // released last: that may call the host
    if (removed.keyed && indexed_) index_.erase(removed.name);
    order_.erase(order_.begin() + static_cast<std::ptrdiff_t>(position));
    --claimed_;
    for (PropertyEnumerator* const each : enumerators_) {
        if (position < each->position_) --each->position_;
    }
}

void KeyedItems::move(std::size_t from, std::size_t to) {
    claimKeys();
    const auto place = [this](std::size_t position) { return order_.begin() + static_cast<std::ptrdiff_t>(position); };
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

const KeyedItems::Source& KeyedItems::keep(std::u16string text, Date readAt) {
    sources_.push_back(std::make_unique<const Source>(Source{std::move(text), readAt}));
    return *sources_.back();
}

privProperty& KeyedItems::addRead(std::u16string name, Variant value, Date readAt) {
    return *place(size(), newEntry(std::move(name), std::move(value), readAt)).property;
}

privProperty& KeyedItems::last() {
    return *made(*order_.back());
}

KeyedItems::Entry KeyedItems::newEntry(std::u16string name, Variant value, Date now) const {
    auto property =
        std::make_shared<privProperty>(privProperty::Key(), services_, std::move(name), std::move(value), now);
    const std::u16string_view kept = property->Name();
    return {std::move(property), nullptr, kept, {}};
}

KeyedItems::Entry& KeyedItems::place(std::size_t position, Entry&& entry) {
    Entry* slot = nullptr;
    if (unused_.empty()) {
        slot = &entries_.emplace_back(std::move(entry));
    } else {
        slot = unused_.back();
        *slot = std::move(entry);
        unused_.pop_back();
    }
    order_.insert(order_.begin() + static_cast<std::ptrdiff_t>(position), slot);
    return *slot;
}

const PropertyRef& KeyedItems::made(Entry& entry) const {
    if (entry.property == nullptr) {
        entry.property = std::make_shared<privProperty>(privProperty::Key(), services_, std::u16string(entry.name),
                                                        entry.unreadValue(), entry.source->readAt);
        entry.property->Encoding(entry.unreadEncoding());
        entry.property->SetMultiple(entry.multiple);
    }
    return entry.property;
}

KeyedItems::Entry* KeyedItems::keyedEntry(std::u16string_view key) const {
    if (indexed_) {
        const auto place = index_.find(key);
        return place == index_.end() ? nullptr : place->second;
    }
    for (Entry* const entry : order_) {
        if (entry->keyed && equalIgnoringCase(entry->name, key)) return entry;
    }
    return nullptr;
}

void KeyedItems::claimKeys() {
    for (; claimed_ < order_.size(); ++claimed_) markOwner(claimKey(*order_[claimed_]));
}

// Gives the entry the key of its name. If another entry has that key, returns it instead.
KeyedItems::Entry* KeyedItems::claimKey(Entry& entry) {
    if (!indexed_ && order_.size() > mostWithoutIndex) buildIndex();
    Entry* const owner = indexed_ ? index_.try_emplace(entry.name, &entry).first->second : keyedEntry(entry.name);
    if (owner != nullptr && owner != &entry) return owner;
    entry.keyed = true;
    return nullptr;
}

void KeyedItems::markOwner(Entry* owner) noexcept {
    if (owner == nullptr) return;
    owner->multiple = true;
    if (owner->property != nullptr) owner->property->SetMultiple(true);
}

void KeyedItems::buildIndex() {
    Index index;
    index.reserve(order_.size());
    for (Entry* const entry : order_) {
        if (entry->keyed) index.emplace(entry->name, entry);
    }
    index_.swap(index);
    indexed_ = true;
}

}  // namespace velmor
