// The child collections of a property: text until the first read, then a collection.

#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"

namespace velmor {

privProperty::Extras& privProperty::extras() {
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    return *extras_;
}

std::shared_ptr<privProperties> privProperty::built(Child which) {
    Children& children = extras().of(which);
    if (children.built == nullptr) {
        children.built = std::make_shared<privProperties>(services_);
        children.built->Build(children.text);
        children.text = {};
    }
    return children.built;
}

bool privProperty::has(Child which) const {
    if (extras_ == nullptr) return false;
    const Children& children = extras_->of(which);
    return children.built != nullptr ? children.built->Count() > 0 : !children.text.empty();
}

void privProperty::keepChild(Child which, std::u16string text) {
    extras().of(which) = {std::move(text), nullptr};
}

// At the limit children count as empty; they are not even built, for text can nest deeper than
// anything that is worth a count.
std::int32_t privProperty::withChildren(std::int32_t own, int level, std::int32_t (privProperties::*sum)(int) const) {
    if (extras_ == nullptr || level >= privProperties::maximumNesting) return own;
    for (const Child which : {Child::attributes, Child::properties}) {
        if (has(which)) own = checkedLong(std::int64_t{own} + (*built(which).*sum)(level + 1));
    }
    return own;
}

std::int32_t privProperty::countChildren(int level) {
    return withChildren(0, level, &privProperties::countTotal);
}

}  // namespace velmor
