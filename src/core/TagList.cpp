#include "core/TagList.h"

#include <algorithm>
#include <utility>

#include "core/BuiltInCommands.h"
#include "core/Evaluation.h"
#include "core/kvTag.h"
#include "core/kvTags.h"

namespace velmor {

namespace {

template <class Entry>
auto findTag(std::vector<Entry>& entries, std::size_t index) {
    const auto found = std::lower_bound(entries.begin(), entries.end(), index,
                                        [](const Entry& entry, std::size_t sought) { return entry.tag < sought; });
    return found != entries.end() && found->tag == index ? found : entries.end();
}

}  // namespace

TagList::TagList(platform::Services& services, TextRef source, TopLevelTags tags, ContextRef context)
    : services_(services),
      source_(std::move(source)),
      text_(*source_),
      spans_(std::move(tags.tags)),
      firstStray_(tags.firstStray),
      context_(std::move(context)),
      kept_(std::make_shared<KeptTags>()) {}

TagList::~TagList() {
    cleanUp();
}

void TagList::start(std::u16string_view source, const TopLevelTags& tags, ContextRef context,
                    std::shared_ptr<KeptTags> kept) {
    clear();
    source_.reset();
    text_ = source;
    spans_.assign(tags.tags.begin(), tags.tags.end());
    firstStray_ = tags.firstStray;
    context_ = std::move(context);
    kept_ = std::move(kept);
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
    if (const std::shared_ptr<kvTag> known = made(index)) return known;
    auto tag = std::make_shared<kvTag>(services_);
    tag->becomeChild(context_);
    tag->Name(rawName(index));
    if (index == running_) {
        tag->answering_ = true;
    } else {
        adoptOutcome(*tag, index);
    }
    made_.emplace(index, tag);
    return tag;
}

void TagList::adoptOutcome(kvTag& tag, std::size_t index) {
    if (index >= places_.size() || places_[index].start == ResultPlace::kNotEvaluated) return;
    const auto result = std::make_shared<const std::u16string>(resultOf(places_[index]));
    std::unique_ptr<TagList> nested = takeNested(index);
    if (!nested) {
        tag.adoptOutcome(result, std::make_shared<kvTags>(), result);
        return;
    }
    nested->finishResults(result);
    TextRef value = nested->source_;
    tag.adoptOutcome(std::move(value), std::make_shared<kvTags>(std::move(nested)), result);
}

std::unique_ptr<TagList> TagList::takeNested(std::size_t index) {
    if (const auto whole = findTag(whole_, index); whole != whole_.end()) return std::move(whole->tags);
    const auto kept = findTag(nested_, index);
    if (kept == nested_.end()) return nullptr;
    KeptTags::Record record = kept_->read(kept->record, text_);
    const auto value = std::make_shared<const std::u16string>(record.value);
    const bool isRtf = value->starts_with(kRtfStart);
    auto tags = std::make_unique<TagList>(services_, value, findTopLevelTags(*value),
                                          isRtf ? protectedContext(context_) : context_);
    tags->places_ = std::move(record.places);
    tags->nested_ = std::move(record.nested);
    tags->kept_ = kept_;
    return tags;
}

std::u16string_view TagList::resultOf(const ResultPlace& place) const {
    if (results_) return std::u16string_view(*results_).substr(place.start, place.length);
    return std::u16string_view(*target_).substr(base_ + place.start, place.length);
}

void TagList::beginResults(const std::u16string& target, std::size_t base) {
    target_ = &target;
    base_ = base;
    if (kept_) places_.resize(spans_.size());
}

void TagList::settle(std::size_t index, std::size_t start, std::size_t length) {
    running_ = kNone;
    if (!kept_) return;
    places_[index] = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(length)};
    if (const std::shared_ptr<kvTag> tag = made(index)) adoptOutcome(*tag, index);
}

void TagList::keepNested(std::size_t index, TagList& nested) {
    if (!kept_) {
        nested.cleanUp();
    } else if (nested.canBePacked()) {
        keep(index, nested);
    } else {
        whole_.push_back({static_cast<std::uint32_t>(index), nested.detach()});
    }
}

void TagList::keep(std::size_t index, const TagList& nested) {
    KeptTags::Nested entry{static_cast<std::uint32_t>(index), 0};
    if (kept_->add(nested.text_, text_, nested.places_, nested.nested_, entry.record)) {
        nested_.push_back(entry);
    } else {
        reportLimit(services_, *context_, EvaluationLimit::kept, BuiltInCommands::handler, rawName(index));
    }
}

void TagList::settleObject(std::size_t index, std::size_t start, std::size_t length) {
    const auto found = made_.find(index);
    if (found == made_.end() || found->second.use_count() > 1 || !isSpare(*found->second, index)) return;
    if (kept_) places_[index] = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(length)};
    made_.erase(found);
}

// True when item() would make an object in the same state.
bool TagList::isSpare(const kvTag& tag, std::size_t index) const {
    const bool hasOwnContext = tag.context_ != context_ && !tag.value_->starts_with(kRtfStart);
    return tag.resultGenerated_ && tag.value_ == tag.result_ && !hasOwnContext && tag.name_ == storedName(index);
}

std::unique_ptr<TagList> TagList::detach() {
    auto source = std::make_shared<const std::u16string>(text_);
    auto tags =
        std::make_unique<TagList>(services_, std::move(source), TopLevelTags{std::move(spans_), firstStray_}, context_);
    tags->places_ = std::move(places_);
    tags->nested_ = std::move(nested_);
    tags->whole_ = std::move(whole_);
    tags->kept_ = kept_;
    tags->made_ = std::move(made_);
    tags->results_ = std::move(results_);
    clear();
    return tags;
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
    // What is released may come back to this list.
    const auto made = std::exchange(made_, {});
    clear();
    for (const auto& entry : made) entry.second->releaseShared();
}

void TagList::clear() {
    made_.clear();
    spans_.clear();
    places_.clear();
    nested_.clear();
    whole_.clear();
    results_.reset();
    target_ = nullptr;
    context_.reset();
}

}  // namespace velmor
