#include "core/kvTags.h"

#include "automation/Convert.h"
#include "core/kvTag.h"

namespace velmor {

using automation::Variant;

std::shared_ptr<kvTag> kvTags::Item(const Variant& vntIndexKey) {
    // A text is a key, and no tag has one.
    if (vntIndexKey.isString()) return nullptr;
    return Item(automation::toLong(vntIndexKey).value_or(0));
}

std::shared_ptr<kvTag> kvTags::Item(std::int32_t index) {
    if (index < 1 || index > Count()) return nullptr;
    return tags_->item(static_cast<std::size_t>(index - 1));
}

std::shared_ptr<TagEnumerator> kvTags::NewEnum() {
    return std::make_shared<TagEnumerator>(std::static_pointer_cast<kvTags>(shared_from_this()));
}

automation::ObjectRef TagEnumerator::nextObject() {
    const std::shared_ptr<kvTag> tag = tags_->Item(position_ + 1);
    if (tag) ++position_;
    return tag;
}

bool TagEnumerator::skip(std::uint32_t count) {
    const auto left = static_cast<std::uint32_t>(std::max(0, tags_->Count() - position_));
    position_ += static_cast<std::int32_t>(std::min(count, left));
    return count <= left;
}

}  // namespace velmor
