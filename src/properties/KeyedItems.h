#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "properties/privProperty.h"

namespace velmor {

class PropertyEnumerator;

// The platform's ordered collection with keys: entries by 0-based position, and by key those that
// carry one. A key is the property's name when it was placed, compared without regard to case.
// By key, by position and at either end: constant time. Elsewhere the references of the shorter
// side are shifted. Whatever may fail (std::bad_alloc) fails before anything changes.
// A property is in one such collection at a time; one that it left may still be enumerated.
class KeyedItems : public std::enable_shared_from_this<KeyedItems> {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    std::size_t size() const noexcept { return order_.size() - first_; }
    const PropertyRef& at(std::size_t position) const { return order_[first_ + position]; }
    auto begin() const { return order_.begin() + static_cast<std::ptrdiff_t>(first_); }
    auto end() const { return order_.end(); }
    void reserve(std::size_t count);  // room for so many entries in all

    // The entry that carries the key; null if no entry does.
    privProperty* find(std::u16string_view key) const noexcept;
    std::size_t positionOf(const privProperty* property) const noexcept;

    // Place an entry at the end or before a position. Return the entry that has the key of that
    // name already; the new one is then placed without a key. Null: the new one got the key.
    privProperty* append(PropertyRef property) { return append(std::move(property), std::nullopt); }
    privProperty* insert(std::size_t position, PropertyRef property);

    // For an entry that is about to be made: its key's hash, once there is a table of keys, whose
    // place for it is then on its way from memory while the value is read.
    using Hash = std::optional<std::uint32_t>;
    Hash announce(std::u16string_view key) const noexcept;
    privProperty* append(PropertyRef property, Hash hash);

    void remove(std::size_t position);
    void move(std::size_t from, std::size_t to);
    // The same entries in another order.
    void arrange(std::vector<PropertyRef> order) noexcept;

    // Before the entries enter another collection: from now on this one only enumerates.
    void releaseKeys() noexcept;

private:
    friend class PropertyEnumerator;

    bool isNearFront(std::size_t position) const noexcept { return position < size() / 2; }
    void makeRoom(bool inFront);
    auto place(std::size_t position) { return order_.begin() + static_cast<std::ptrdiff_t>(first_ + position); }
    privProperty* findInOrder(std::u16string_view key) const noexcept;
    std::size_t slotOf(std::uint32_t hash, std::u16string_view key) const noexcept;
    privProperty* claimKey(privProperty* property, Hash hash);
    void dropKey(privProperty* property) noexcept;
    void growTable(std::size_t size);
    void enter(privProperty* property) noexcept;

    std::vector<PropertyRef> order_;  // the first first_ places are free
    std::size_t first_ = 0;
    // The table of keys: open addressing with linear probing. The size is a power of two, at most
    // four fifths are taken. One byte of each hash has an array of its own (0: free slot), so that looking up
    // a new name touches little memory. Empty while a look
    // along the order is as quick.
    std::vector<std::uint8_t> tags_;
    std::vector<privProperty*> keyedAt_;
    std::size_t keys_ = 0;
    std::vector<PropertyEnumerator*> enumerators_;
};

}  // namespace velmor
