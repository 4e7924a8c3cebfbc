// The child collections of a property: text until the first read, then a collection.

#include "properties/Overflow.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"

namespace velmor {

privProperty::Extras& privProperty::extras() {
    if (extras_ == nullptr) extras_ = std::make_unique<Extras>();
    return *extras_;
}

std::shared_ptr<privProperties> privProperty::build(Child& child) {
    if (child.built == nullptr) {
        child.built = std::make_shared<privProperties>(services_);
        child.built->Build(child.text);
        child.text = {};
    }
    return child.built;
}

std::shared_ptr<privProperties> privProperty::Attributes() {
    return build(extras().attributes);
}

std::shared_ptr<privProperties> privProperty::Properties() {
    return build(extras().properties);
}

bool privProperty::Child::holdsAnything() const {
    return built != nullptr ? built->Count() > 0 : !text.empty();
}

std::u16string privProperty::Child::stored(int level) const {
    return built != nullptr ? built->text(privProperties::TextForm::stored, level) : text;
}

bool privProperty::HasAttributes() const {
    return extras_ != nullptr && extras_->attributes.holdsAnything();
}

bool privProperty::HasProperties() const {
    return extras_ != nullptr && extras_->properties.holdsAnything();
}

std::u16string privProperty::AttributesStored() const {
    return extras_ != nullptr ? extras_->attributes.stored(1) : std::u16string();
}

std::u16string privProperty::PropertiesStored() const {
    return extras_ != nullptr ? extras_->properties.stored(1) : std::u16string();
}

void privProperty::SetAttributesStored(std::u16string psText) {
    extras().attributes = {std::move(psText), nullptr};
}

void privProperty::SetPropertiesStored(std::u16string psText) {
    extras().properties = {std::move(psText), nullptr};
}

// At the limit children count as empty; they are not even built, for text can nest deeper than
// anything that is worth a count.
std::int32_t privProperty::countChildren(int level) {
    if (extras_ == nullptr || level >= privProperties::maximumNesting) return 0;
    std::int32_t count = 0;
    if (HasAttributes()) count = Attributes()->countTotal(level + 1);
    if (HasProperties()) count = checkedLong(std::int64_t{count} + Properties()->countTotal(level + 1));
    return count;
}

}  // namespace velmor
