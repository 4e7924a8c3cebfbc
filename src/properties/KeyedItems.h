#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "automation/Variant.h"
#include "properties/privProperty.h"
#include "text/Compare.h"

namespace velmor {

class PropertyEnumerator;

// The platform's ordered collection with keys: entries by 0-based position, and by key those that
// carry one. A key is the property's name, compared without regard to case. Access by key, by
// position and at either end takes constant time; elsewhere the places of the shorter side are
// shifted. Whatever may fail (std::bad_alloc) fails before anything changes.
//
// An entry that was read from a text, or added as one, stays a pair of spans until it is requested as a property.
// Likewise, keys are given out when one is first looked up or an entry is first returned, so a collection that
// is only read and written makes neither.
class KeyedItems : public std::enable_shared_from_this<KeyedItems> {
public:
    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    // A text that entries are spans of, and when it was read.
    struct Source {
        std::u16string text;
        automation::Date readAt;
        bool isDelimited = false;  // its entries end with ":", as they are written
    };
    // How a value is written there: typed by typedValue; in quotes; as it is; with its quotes substituted.
    enum class Spelling : std::uint8_t { unquoted, quoted, plain, substituted };
    struct Entry {
        PropertyRef property;            // null until it is requested
        const Source* source = nullptr;  // null when the entry was not read from a text
        std::u16string_view name;        // in the source or in the property
        std::u16string_view value;       // in the source
        Spelling spelling = Spelling::unquoted;
        bool keyed = false;
        bool multiple = false;   // of the property, once it is made
        std::uint8_t trait = 0;  // of the name, see traitOf

        // The whole entry, if the source has it as the writer of the text form would write it; else empty.
        std::u16string_view verbatim() const noexcept;
        bool isText() const noexcept { return spelling == Spelling::quoted || spelling == Spelling::plain; }
        automation::Variant unreadValue() const;
        std::int32_t unreadEncoding() const noexcept { return spelling == Spelling::substituted ? 8 : 0; }
    };

    // The services must outlive the properties.
    explicit KeyedItems(platform::Services& services) : services_(services) {}
    // The same properties in another order, given as 0-based positions. Keys go to the first property
    // of each name in the former order.
    KeyedItems(KeyedItems& other, const std::vector<std::size_t>& order);
    KeyedItems(const KeyedItems&) = delete;
    KeyedItems& operator=(const KeyedItems&) = delete;

    std::size_t size() const noexcept { return order_.size(); }
    PropertyRef at(std::size_t position);
    const Entry& entry(std::size_t position) const { return *order_[position]; }

    // The entry that carries the key; null if no entry does.
    PropertyRef find(std::u16string_view key);
    // Its text, for which no property is made: its own until it changes, or `buffer`, which receives it.
    std::optional<std::u16string_view> textOf(std::u16string_view key, std::u16string& buffer);
    std::size_t positionOf(std::u16string_view key);  // npos if no entry carries the key; linear

    // Makes a property and places it before a position, which may be size(). If another entry has the
    // key of that name already, that entry's Multiple is set and the new one carries no key.
    PropertyRef insert(std::size_t position, std::u16string_view name, automation::Variant&& value);
    // Places an entry of that text at the end. The memory of such entries is released with all of them, so this does
    // nothing and returns false after a removal; the same if another entry has the key of that name.
    bool addText(std::u16string_view name, std::u16string_view value);

    void remove(std::size_t position);
    void move(std::size_t from, std::size_t to);

    // For the reader. Its entries become properties on request.

    const Source& keep(Source&& source);
    void addUnread(const Entry& entry) { place(size(), Entry(entry)); }
    privProperty& addRead(std::u16string name, automation::Variant&& value, automation::Date readAt);
    privProperty& last();  // of the last entry, which must exist

private:
    friend class PropertyEnumerator;
    using Index = std::unordered_map<std::u16string_view, Entry*, HashIgnoringCase, EqualIgnoringCase>;

    Entry& place(std::size_t position, Entry&& entry);
    Entry newEntry(std::u16string name, automation::Variant&& value, automation::Date now) const;
    Source& sourceFor(std::size_t units);
    const PropertyRef& made(Entry& entry) const;
    Entry* keyedEntry(std::u16string_view key) const;
    Entry* claimKey(Entry& entry);
    void giveKey(Entry& entry) noexcept;
    static void markOwner(Entry* owner) noexcept;
    void claimKeys();
    void buildIndex();

    platform::Services& services_;
    std::vector<std::unique_ptr<const Source>> sources_;
    Source* added_ = nullptr;  // the last one of added texts
    bool hasRemoved_ = false;
    std::deque<Entry> entries_;  // in no order; an entry never moves
    std::vector<Entry*> unused_;
    std::deque<Entry*> order_;
    std::size_t claimed_ = 0;   // the entries from this position on have not been given their keys
    std::uint64_t traits_ = 0;  // a bit for each trait of a name that ever was a key
    Index index_;               // of the keyed entries; unused while a look along the order is as quick
    bool indexed_ = false;
    std::vector<PropertyEnumerator*> enumerators_;
};

}  // namespace velmor
