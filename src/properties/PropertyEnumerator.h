#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "automation/Enumeration.h"
#include "properties/KeyedItems.h"

namespace velmor {

// What a host's "For Each" steps through. Entries removed or inserted meanwhile move the
// enumerator's place along: none is met twice or left out.
class PropertyEnumerator final : public automation::Enumeration {
public:
    PropertyEnumerator(std::shared_ptr<KeyedItems> items, std::size_t position)
        : items_(std::move(items)), position_(position) {
        items_->enumerators_.push_back(this);
    }
    ~PropertyEnumerator() override { std::erase(items_->enumerators_, this); }
    PropertyEnumerator(const PropertyEnumerator&) = delete;
    PropertyEnumerator& operator=(const PropertyEnumerator&) = delete;

    // Null at the end.
    PropertyRef next() {
        if (position_ == items_->size()) return nullptr;
        PropertyRef property = items_->at(position_);
        ++position_;
        return property;
    }
    automation::ObjectRef nextObject() override { return next(); }
    bool skip(std::uint32_t count) override {
        const std::size_t left = items_->size() - position_;
        position_ += std::min<std::size_t>(left, count);
        return count <= left;
    }
    void reset() override { position_ = 0; }
    std::shared_ptr<automation::Enumeration> clone() const override {
        return std::make_shared<PropertyEnumerator>(items_, position_);
    }
    std::u16string typeName() const override { return u"PropertyEnumerator"; }

private:
    friend class KeyedItems;
    std::shared_ptr<KeyedItems> items_;
    std::size_t position_;  // of the entry that comes next
};

}  // namespace velmor
