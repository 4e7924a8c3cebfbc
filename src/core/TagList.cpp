#include "core/TagList.h"

#include <algorithm>

#include "core/kvTag.h"
#include "core/kvTags.h"

namespace velmor {

TagList::TagList(platform::Services& services, TextRef source, TopLevelTags tags, ContextRef context)
    : services_(services),
      source_(std::move(source)),
      spans_(std::move(tags.tags)),
      firstStray_(tags.firstStray),
      context_(std::move(context)) {}

TagList::~TagList() {
    cleanUp();
}

std::u16string TagList::storedName(std::size_t index) const {
    std::u16string name(rawName(index));
    if (!name.ends_with(kElementSeparator)) name += kElementSeparator;
    return name;
}

std::shared_ptr<kvTag> TagList::made(std::size_t index) const {
    if (made_.empty()) return nullptr;
    const auto found = made_.find(index);
    return found == made_.end() ? nullptr : found->second;
}

std::shared_ptr<kvTag> TagList::item(std::size_t index) {
    std::shared_ptr<kvTag>& tag = made_[index];
    if (!tag) {
        tag = std::make_shared<kvTag>(services_);
        tag->becomeChild(context_);
        tag->Name(rawName(index));
        if (index == running_) {
            tag->answering_ = true;
        } else {
            adoptOutcome(*tag, index);
        }
    }
    return tag;
}

void TagList::adoptOutcome(kvTag& tag, std::size_t index) {
    if (index >= places_.size() || places_[index].start == kNotEvaluated) return;
    const auto result = std::make_shared<const std::u16string>(resultOf(places_[index]));
    const auto nested = std::lower_bound(nested_.begin(), nested_.end(), index,
                                         [](const Nested& entry, std::size_t sought) { return entry.index < sought; });
    if (nested == nested_.end() || nested->index != index) {
        tag.adoptOutcome(result, std::make_shared<kvTags>(), result);
        return;
    }
    NestedTags tags = std::move(nested->tags);
    nested_.erase(nested);
    if (!tags.tags->hasKeptResults()) tags.tags->keepResults(result);
    tag.adoptOutcome(std::move(tags.value), std::make_shared<kvTags>(std::move(tags.tags)), result);
}

std::u16string_view TagList::resultOf(const Place& place) const {
    if (results_) return std::u16string_view(*results_).substr(place.start, place.length);
    return std::u16string_view(*target_).substr(base_ + place.start, place.length);
}

void TagList::beginResults(const std::u16string& target, std::size_t base) {
    target_ = &target;
    base_ = base;
    if (!forgetful_) places_.resize(spans_.size());
}

void TagList::beginTag(std::size_t index) noexcept {
    running_ = index;
}

void TagList::settle(std::size_t index, std::size_t start, std::size_t length) {
    running_ = kNone;
    if (forgetful_) return;
    places_[index] = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(length)};
    if (const std::shared_ptr<kvTag> tag = made(index)) adoptOutcome(*tag, index);
}

void TagList::keepNested(std::size_t index, NestedTags nested) {
    if (!forgetful_) nested_.push_back({static_cast<std::uint32_t>(index), std::move(nested)});
}

void TagList::keepResults(TextRef results) {
    results_ = std::move(results);
    target_ = nullptr;
}

void TagList::finishResults(const TextRef& target) {
    if (!results_) keepResults(target);
}

void TagList::endEvaluation() {
    if (--evaluations_ == 0 && toBeCleanedUp_) cleanUp();
}

void TagList::cleanUp() {
    toBeCleanedUp_ = evaluations_ != 0;
    if (toBeCleanedUp_) return;
    for (const auto& entry : made_) entry.second->releaseShared();
    made_.clear();
    spans_.clear();
    places_.clear();
    nested_.clear();
    context_.reset();
}

}  // namespace velmor
