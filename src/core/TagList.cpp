#include "core/TagList.h"

#include <utility>

#include "core/EvaluationRules.h"
#include "core/kvTag.h"
#include "core/kvTags.h"
#include "rtf/edit/EmptyParagraphs.h"
#include "text/privStrCat.h"

namespace velmor {

std::u16string storedName(std::u16string_view rawName) {
    std::u16string name(rawName);
    if (!name.ends_with(elementSeparator)) name += elementSeparator;
    return name;
}

void KeptLists::cleanUp() {
    // What is released may come back to these lists.
    for (ContextRef& context : contexts_) const ContextRef released = std::move(context);
}

void EndKeptList::operator()(TagList* list) const noexcept {
    if (list->lists_->haveObjects) list->~TagList();
}

TagList::TagList(platform::Services& services, std::u16string_view text, const TopLevelTags& tags,
                 const ContextRef& context, KeptLists* lists)
    : services_(services),
      text_(text),
      lists_(lists),
      tags_(tags.tags.size(), lists ? &lists->memory : std::pmr::get_default_resource()),
      firstStray_(tags.firstStray),
      context_(lists ? &lists->share(context) : &context) {
    for (std::size_t index = 0; index < tags_.size(); ++index) tags_[index].span = tags.tags[index];
}

TagList::~TagList() {
    cleanUp();
}

KeptListRef TagList::keep(platform::Services& services, std::u16string_view text, const TopLevelTags& tags,
                          const ContextRef& context, KeptLists& lists) {
    void* const place = lists.memory.allocate(sizeof(TagList), alignof(TagList));
    return KeptListRef(new (place) TagList(services, text, tags, context, &lists));
}

KeptListRef TagList::keepNested(std::u16string_view value, bool isPart, const TopLevelTags& tags,
                                const ContextRef& context) {
    const std::size_t textBytes = isPart ? 0 : value.size() * sizeof(char16_t);
    const std::size_t bytes = sizeof(TagList) + tags.tags.size() * sizeof(ListedTag) + textBytes;
    if (!isKept() || !EvaluationRun::current().keep(bytes)) return nullptr;
    if (!isPart) {
        auto* const copy = static_cast<char16_t*>(lists_->memory.allocate(textBytes, alignof(char16_t)));
        value = {copy, value.copy(copy, value.size())};
    }
    return keep(services_, value, tags, context, *lists_);
}

std::shared_ptr<kvTag> TagList::item(std::size_t index) {
    ListedTag& entry = tags_[index];
    if (entry.object) return entry.object;
    auto tag = std::make_shared<kvTag>(services_);
    if (isKept()) lists_->haveObjects = true;
    tag->becomeChild(*context_);
    tag->Name(rawName(index));
    tag->answering_ = index == running_;
    entry.object = tag;
    if (!tag->answering_) adoptOutcome(entry);
    return tag;
}

void TagList::beginResults(const BuilderRef& results) {
    results_ = isKept() ? &lists_->share(results) : &results;
    if (isKept()) lists_->hasEmptyTags = EvaluationRun::current().rules().dropsEmptyParagraphs;
}

void TagList::adoptOutcome(ListedTag& entry) {
    if (entry.resultStart == ListedTag::notEvaluated) return;
    std::u16string text((*results_)->contiguous().substr(entry.resultStart, entry.resultLength));
    if (lists_->hasEmptyTags) removeEmptyTags(text);
    const auto result = std::make_shared<const std::u16string>(std::move(text));
    if (!entry.nested) {
        entry.object->adoptOutcome(result, std::make_shared<kvTags>(), result);
        return;
    }
    TextRef value = std::make_shared<const std::u16string>(entry.nested->text());
    auto tags = std::make_shared<kvTags>(lists_->shared_from_this(), std::move(entry.nested));
    entry.object->adoptOutcome(std::move(value), std::move(tags), result);
}

void TagList::settle(std::size_t index, std::size_t start, std::size_t length, KeptListRef nested) {
    running_ = noTag;
    if (!isKept()) return;
    ListedTag& entry = tags_[index];
    entry.resultStart = static_cast<std::uint32_t>(start);
    entry.resultLength = static_cast<std::uint32_t>(length);
    entry.nested = std::move(nested);
    if (entry.object) adoptOutcome(entry);
}

void TagList::settleObject(std::size_t index, std::size_t start, std::size_t length) {
    ListedTag& entry = tags_[index];
    if (entry.object.use_count() != 1 || !isSpare(*entry.object, index)) return;
    entry.object.reset();
    settle(index, start, length, nullptr);
}

// True when item() would make an object in the same state.
bool TagList::isSpare(const kvTag& tag, std::size_t index) const {
    const bool hasOwnContext = tag.context_ != *context_ && !tag.value_->starts_with(rtfStart);
    return tag.resultGenerated_ && tag.value_ == tag.result_ && !hasOwnContext &&
           tag.name_ == storedName(rawName(index));
}

void TagList::moveResults(const BuilderRef& results, std::size_t distance) {
    beginResults(results);
    for (ListedTag& entry : tags_) {
        if (entry.resultStart == ListedTag::notEvaluated) continue;
        entry.resultStart -= static_cast<std::uint32_t>(distance);
        if (entry.nested) entry.nested->moveResults(results, distance);
    }
}

void TagList::endEvaluation() {
    if (--evaluations_ == 0 && toBeCleanedUp_) cleanUp();
}

void TagList::cleanUp() {
    toBeCleanedUp_ = evaluations_ != 0;
    if (toBeCleanedUp_) return;
    // What is released may come back to this list.
    const std::pmr::vector<ListedTag> tags = std::move(tags_);
    tags_.clear();
    static const ContextRef none;
    context_ = &none;
    for (const ListedTag& entry : tags) {
        if (entry.object) entry.object->releaseShared();
    }
    const bool isOutermost = isKept() && text_.data() == lists_->source->data();
    if (isOutermost) lists_->cleanUp();
}

}  // namespace velmor
