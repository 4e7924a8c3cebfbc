#include "properties/PropertyEnumerator.h"

#include <algorithm>

#include "properties/KeyedItems.h"

namespace velmor {

PropertyEnumerator::PropertyEnumerator(std::shared_ptr<KeyedItems> items, std::size_t position)
    : items_(std::move(items)), position_(position) {
    items_->enumerators_.push_back(this);
}

PropertyEnumerator::~PropertyEnumerator() {
    auto& all = items_->enumerators_;
    all.erase(std::find(all.begin(), all.end(), this));
}

PropertyRef PropertyEnumerator::next() {
    if (position_ == items_->size()) return nullptr;
    const PropertyRef property = items_->at(position_);
    ++position_;
    return property;
}

bool PropertyEnumerator::skip(std::uint32_t count) {
    const std::size_t left = items_->size() - position_;
    position_ += std::min<std::size_t>(left, count);
    return count <= left;
}

void PropertyEnumerator::reset() {
    position_ = 0;
}

std::shared_ptr<automation::Enumeration> PropertyEnumerator::clone() const {
    return std::make_shared<PropertyEnumerator>(items_, position_);
}

}  // namespace velmor
