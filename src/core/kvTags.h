#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "automation/Enumeration.h"
#include "automation/Variant.h"
#include "core/TagList.h"

namespace velmor {

class kvTag;
class TagEnumerator;

// The top-level tags of one value, in order of appearance, from 1. Parents own their children; a
// child made for a reader of this collection stays the same object.
class kvTags : public automation::Object {
public:
    kvTags() = default;
    kvTags(std::shared_ptr<KeptLists> lists, KeptListRef tags) : lists_(std::move(lists)), tags_(std::move(tags)) {}

    // By 1-based index; a text is a key, and no tag has one. Null when there is none; never raises.
    std::shared_ptr<kvTag> Item(const automation::Variant& vntIndexKey);
    std::shared_ptr<kvTag> Item(std::int32_t index);
    std::int32_t Count() const { return tags_ ? static_cast<std::int32_t>(tags_->size()) : 0; }
    // What a host's "For Each" steps through.
    std::shared_ptr<TagEnumerator> NewEnum();

    // Breaks the references from the tags to what they share with their parent, innermost last,
    // and empties the collection. The shared collections themselves stay as they are.
    void cleanUp() {
        if (tags_) tags_->cleanUp();
    }

    automation::Variant invoke(std::u16string_view name, automation::InvokeKind kind,
                               std::span<automation::Variant> arguments) override;
    std::u16string typeName() const override { return u"kvTags"; }

    // For the evaluation alone.
    TagList& list() noexcept { return *tags_; }

private:
    std::shared_ptr<KeptLists> lists_;  // that the list is kept in
    KeptListRef tags_;
};

class TagEnumerator final : public automation::Enumeration {
public:
    explicit TagEnumerator(std::shared_ptr<kvTags> tags) : tags_(std::move(tags)) {}

    automation::ObjectRef nextObject() override;
    bool skip(std::uint32_t count) override;
    void reset() noexcept override { position_ = 0; }
    std::shared_ptr<automation::Enumeration> clone() const override { return std::make_shared<TagEnumerator>(*this); }
    std::u16string typeName() const override { return u"TagEnumerator"; }

private:
    std::shared_ptr<kvTags> tags_;
    std::int32_t position_ = 0;  // tags already met
};

}  // namespace velmor
