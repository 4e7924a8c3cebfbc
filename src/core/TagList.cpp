#include "core/TagList.h"

#include <algorithm>

#include "core/kvTag.h"
#include "core/kvTags.h"

namespace velmor {

namespace {

template <class Entry>
auto findIndex(std::vector<Entry>& entries, std::size_t index) {
    const auto found = std::lower_bound(entries.begin(), entries.end(), index,
                                        [](const Entry& entry, std::size_t sought) { return entry.index < sought; });
    return found != entries.end() && found->index == index ? found : entries.end();
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

void TagList::start(std::u16string_view source, TopLevelTags& tags, ContextRef context,
                    std::shared_ptr<KeptTags> kept) {
    clear();
    source_.reset();
    text_ = source;
    spans_.swap(tags.tags);
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
    if (const auto whole = findIndex(whole_, index); whole != whole_.end()) return std::move(whole->tags);
    const auto packed = findIndex(nested_, index);
    if (packed == nested_.end()) return nullptr;
    KeptTags::Record record = kept_->read(packed->address);
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
    const auto place = static_cast<std::uint32_t>(index);
    if (!kept_) {
        nested.cleanUp();
    } else if (!nested.canBePacked()) {
        whole_.push_back({place, nested.detach()});
    } else if (!kept_->isFull()) {
        nested_.push_back({place, kept_->add(nested.text_, nested.places_, nested.nested_)});
    }
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
    for (const auto& entry : made_) entry.second->releaseShared();
    clear();
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
