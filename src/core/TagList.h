#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/KeptTags.h"
#include "core/Markup.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class kvTag;

// The top-level tags of one value as places in its text, 16 bytes a tag. The kvTag objects that
// readers and handlers see are made when they are asked for, and kept from then on. A tag that is
// evaluated without one leaves its result here, as a place in its parent's result.
class TagList {
public:
    TagList(platform::Services& services, TextRef source, TopLevelTags tags, ContextRef context);
    // A list to be started.
    explicit TagList(platform::Services& services) : services_(services) {}
    ~TagList();
    TagList(const TagList&) = delete;
    TagList& operator=(const TagList&) = delete;

    // Begins anew on the tags of another text, which must outlive its evaluation; keeps its memory.
    // What becomes of nested values goes to `kept`; nobody will ask when that is null.
    void start(std::u16string_view source, const TopLevelTags& tags, ContextRef context,
               std::shared_ptr<KeptTags> kept);

    std::size_t size() const noexcept { return spans_.size(); }
    // The first opening marker of the source that stands in none of the tags.
    std::size_t firstStray() const noexcept { return firstStray_; }
    const TagSpan& span(std::size_t index) const noexcept { return spans_[index]; }
    std::u16string_view source() const noexcept { return text_; }
    const ContextRef& context() const noexcept { return context_; }
    platform::Services& services() const noexcept { return services_; }

    // As it stands between the markers; a tag's name is that with a ":" at its end.
    std::u16string_view rawName(std::size_t index) const noexcept { return spans_[index].inner(text_); }
    std::u16string storedName(std::size_t index) const;

    std::shared_ptr<kvTag> item(std::size_t index);
    // Null while nobody asked for the object.
    std::shared_ptr<kvTag> made(std::size_t index) const;

    // --- for the evaluation ---

    // In between, a clean-up waits: a handler may ask for it.
    void beginEvaluation() noexcept { ++evaluations_; }
    void endEvaluation();
    // Results are about to be appended to `target`, the first of them at `base`.
    void beginResults(const std::u16string& target, std::size_t base);
    // A tag is being answered without an object of its own ...
    void beginTag(std::size_t index) noexcept { running_ = index; }
    // ... and has its result at start, counted from base.
    void settle(std::size_t index, std::size_t start, std::size_t length);
    // The same for a tag with an object of its own, which goes when nobody else holds it and nothing
    // would be lost.
    void settleObject(std::size_t index, std::size_t start, std::size_t length);
    // What the tag's value became, to be called before it is settled. The list is free afterwards.
    void keepNested(std::size_t index, TagList& nested);
    // The target is complete: this is it.
    void finishResults(const TextRef& target);
    // The results no longer lie in the target but in this text.
    void keepResults(TextRef results);
    // Where what becomes of nested values is kept; null when nobody will ask.
    const std::shared_ptr<KeptTags>& kept() const noexcept { return kept_; }
    void forget() noexcept { kept_.reset(); }

    // Releases what the made objects share with their parent.
    void cleanUp();

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    // A nested list that holds objects, and cannot be packed.
    struct Whole {
        std::uint32_t tag;  // its index
        std::unique_ptr<TagList> tags;
    };

    std::u16string_view resultOf(const ResultPlace& place) const;
    void adoptOutcome(kvTag& tag, std::size_t index);
    std::unique_ptr<TagList> takeNested(std::size_t index);
    std::unique_ptr<TagList> detach();
    void keep(std::size_t index, const TagList& nested);
    bool isSpare(const kvTag& tag, std::size_t index) const;
    bool canBePacked() const noexcept { return made_.empty() && whole_.empty() && !results_; }
    void clear();

    platform::Services& services_;
    TextRef source_;  // null when the text is somebody else's
    std::u16string_view text_;
    std::vector<TagSpan> spans_;
    std::uint32_t firstStray_ = TopLevelTags::kNone;
    ContextRef context_;
    std::vector<ResultPlace> places_;       // empty until evaluation begins, and when nobody will ask
    std::vector<KeptTags::Nested> nested_;  // by ascending index, as are the whole ones
    std::vector<Whole> whole_;
    std::shared_ptr<KeptTags> kept_;
    std::unordered_map<std::size_t, std::shared_ptr<kvTag>> made_;
    TextRef results_;                         // the parent's finished result
    const std::u16string* target_ = nullptr;  // while it is being made
    std::size_t base_ = 0;
    std::size_t running_ = kNone;
    int evaluations_ = 0;  // running ones
    bool toBeCleanedUp_ = false;
};

}  // namespace velmor
