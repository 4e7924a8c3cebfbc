#include "properties/PropertyEnumerator.h"

#include <algorithm>

#include "automation/DispatchTable.h"
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

std::shared_ptr<PropertyEnumerator> PropertyEnumerator::clone() const {
    return std::make_shared<PropertyEnumerator>(items_, position_);
}

automation::Variant PropertyEnumerator::invoke(std::u16string_view name, automation::InvokeKind kind,
                                               std::span<automation::Variant> arguments) {
    using automation::Arguments;
    using automation::MemberKind;
    using automation::ObjectRef;
    using automation::Variant;
    using Self = PropertyEnumerator;
    static const automation::DispatchTable<Self> members({
        {u"Next", MemberKind::method, 0, 0, [](Self& self, Arguments&) { return Variant(ObjectRef(self.next())); }},
        {u"Skip", MemberKind::method, 1, 1,
         [](Self& self, Arguments& args) -> Variant {
             return self.skip(static_cast<std::uint32_t>(std::max(args.longInteger(0), 0)));
         }},
        {u"Reset", MemberKind::method, 0, 0,
         [](Self& self, Arguments&) {
             self.reset();
             return Variant();
         }},
        {u"Clone", MemberKind::method, 0, 0, [](Self& self, Arguments&) { return Variant(ObjectRef(self.clone())); }},
    });
    return members.invoke(*this, name, kind, arguments);
}

}  // namespace velmor
