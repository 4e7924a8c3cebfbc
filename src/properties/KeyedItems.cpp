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

constexpr std::size_t mostWithoutIndex = 16;
constexpr std::size_t unitsOfSource = 240;  // of added texts

// Equal names have equal traits, below 64. Most look-ups of a name that is no key need nothing else.
std::uint8_t traitOf(std::u16string_view name) noexcept {
    return name.empty() ? 0 : static_cast<std::uint8_t>((5 * name.size() + foldUnit(name.front())) % 64);
}

}  // namespace

Variant KeyedItems::Entry::unreadValue() const {
    if (spelling == Spelling::unquoted) return typedValue(value);
    return isText() ? Variant(value) : Variant(withoutSubstitute(value));
}

std::u16string_view KeyedItems::Entry::verbatim() const noexcept {
    if (property != nullptr || !source->isDelimited) return {};
    const bool quoted = spelling == Spelling::quoted;
    if (!quoted && (spelling != Spelling::unquoted || !isWrittenForm(value))) return {};
    return {name.data(), value.data() + value.size() + (quoted ? 2 : 1)};
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

std::optional<std::u16string_view> KeyedItems::textOf(std::u16string_view key, std::u16string& buffer) {
    claimKeys();
    Entry* const found = keyedEntry(key);
    if (found == nullptr) return std::nullopt;
    if (found->property == nullptr && found->isText()) return found->value;
    const privProperty& property = *made(*found);
    const auto* const text = property.builder() != nullptr ? nullptr : property.rawValue().get<std::u16string>();
    if (text != nullptr) return *text;
    buffer = property.ValueStr();
    return buffer;
}

PropertyRef KeyedItems::insert(std::size_t position, std::u16string_view name, Variant&& value) {
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

bool KeyedItems::addText(std::u16string_view name, std::u16string_view value) {
    claimKeys();
    if (hasRemoved_ || keyedEntry(name) != nullptr) return false;
    Source& source = sourceFor(name.size() + value.size());
    const std::size_t at = source.text.size();
    source.text.append(name).append(value);
    const std::u16string_view added = std::u16string_view(source.text).substr(at);
    Entry& entry =
        place(size(), {nullptr, &source, added.substr(0, name.size()), added.substr(name.size()), Spelling::plain});
    if (size() > mostWithoutIndex) return true;  // claimKeys gives it its key
    giveKey(entry);
    ++claimed_;
    return true;
}

// Where so many units fit without moving the others.
KeyedItems::Source& KeyedItems::sourceFor(std::size_t units) {
    const Date now = services_.clock.now();
    if (added_ == nullptr || added_->readAt != now || added_->text.capacity() - added_->text.size() < units) {
        auto source = std::make_unique<Source>(Source{{}, now});
        source->text.reserve(std::max(units, unitsOfSource));
        added_ = source.get();
        sources_.push_back(std::move(source));
    }
    return *added_;
}

void KeyedItems::remove(std::size_t position) {
    claimKeys();
    hasRemoved_ = true;
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

const KeyedItems::Source& KeyedItems::keep(Source&& source) {
    sources_.push_back(std::make_unique<const Source>(std::move(source)));
    return *sources_.back();
}

privProperty& KeyedItems::addRead(std::u16string name, Variant&& value, Date readAt) {
    return *place(size(), newEntry(std::move(name), std::move(value), readAt)).property;
}

privProperty& KeyedItems::last() {
    return *made(*order_.back());
}

KeyedItems::Entry KeyedItems::newEntry(std::u16string name, Variant&& value, Date now) const {
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
    const std::uint8_t trait = traitOf(key);
    if ((traits_ >> trait & 1) == 0) return nullptr;
    if (indexed_) {
        const auto place = index_.find(key);
        return place == index_.end() ? nullptr : place->second;
    }
    for (Entry* const entry : order_) {
        if (entry->keyed && entry->trait == trait && equalIgnoringCase(entry->name, key)) return entry;
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
    giveKey(entry);
    return nullptr;
}

void KeyedItems::giveKey(Entry& entry) noexcept {
    entry.keyed = true;
    entry.trait = traitOf(entry.name);
    traits_ |= std::uint64_t{1} << entry.trait;
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
