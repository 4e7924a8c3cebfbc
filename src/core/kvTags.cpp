#include "core/kvTags.h"

#include "automation/Convert.h"
#include "automation/DispatchTable.h"
#include "core/TagList.h"
#include "core/kvTag.h"

namespace velmor {

using automation::Arguments;
using automation::MemberKind;
using automation::Variant;

kvTags::kvTags() = default;

kvTags::kvTags(std::unique_ptr<TagList> tags) : tags_(std::move(tags)) {}

kvTags::~kvTags() = default;

std::shared_ptr<kvTag> kvTags::Item(const Variant& vntIndexKey) {
    // A text is a key, and no tag has one.
    if (vntIndexKey.isString()) return nullptr;
    return Item(automation::toLong(vntIndexKey).value_or(0));
}

std::shared_ptr<kvTag> kvTags::Item(std::int32_t index) {
    if (index < 1 || index > Count()) return nullptr;
    return tags_->item(static_cast<std::size_t>(index - 1));
}

std::int32_t kvTags::Count() const {
    return tags_ ? static_cast<std::int32_t>(tags_->size()) : 0;
}

std::shared_ptr<TagEnumerator> kvTags::NewEnum() {
    return std::make_shared<TagEnumerator>(std::static_pointer_cast<kvTags>(shared_from_this()));
}

void kvTags::cleanUp() {
    if (tags_) tags_->cleanUp();
}

std::shared_ptr<kvTag> TagEnumerator::next() {
    const std::shared_ptr<kvTag> tag = tags_->Item(position_ + 1);
    if (tag) ++position_;
    return tag;
}

bool TagEnumerator::skip(std::uint32_t count) {
    const auto left = static_cast<std::uint32_t>(std::max(0, tags_->Count() - position_));
    position_ += static_cast<std::int32_t>(std::min(count, left));
    return count <= left;
}

std::shared_ptr<TagEnumerator> TagEnumerator::clone() const {
    return std::make_shared<TagEnumerator>(*this);
}

Variant TagEnumerator::invoke(std::u16string_view name, automation::InvokeKind kind, std::span<Variant> arguments) {
    static const automation::DispatchTable<TagEnumerator> kMembers({
        {u"Next", MemberKind::method, 0, 0,
         [](TagEnumerator& self, Arguments&) -> Variant { return automation::ObjectRef(self.next()); }},
        {u"Skip", MemberKind::method, 1, 1,
         [](TagEnumerator& self, Arguments& args) -> Variant {
             return self.skip(static_cast<std::uint32_t>(std::max(0, args.longInteger(0))));
         }},
        {u"Reset", MemberKind::method, 0, 0,
         [](TagEnumerator& self, Arguments&) -> Variant {
             self.reset();
             return {};
         }},
        {u"Clone", MemberKind::method, 0, 0,
         [](TagEnumerator& self, Arguments&) -> Variant { return automation::ObjectRef(self.clone()); }},
    });
    return kMembers.invoke(*this, name, kind, arguments);
}

}  // namespace velmor
