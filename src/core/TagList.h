#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/Markup.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class kvTag;
class TagList;
// What a tag became whose value holds tags of its own.
struct NestedTags {
    TextRef value;
    std::unique_ptr<TagList> tags;
};

// The top-level tags of one value as places in its text, 16 bytes a tag. The kvTag objects that
// readers and handlers see are made when they are asked for, and kept from then on. A tag that is
// evaluated without one leaves its result here, as a place in its parent's result.
class TagList {
public:
    TagList(platform::Services& services, TextRef source, TopLevelTags tags, ContextRef context);
    ~TagList();
    TagList(const TagList&) = delete;
    TagList& operator=(const TagList&) = delete;

    std::size_t size() const noexcept { return spans_.size(); }
    // The first opening marker of the source that stands in none of the tags.
    std::size_t firstStray() const noexcept { return firstStray_; }
    const TagSpan& span(std::size_t index) const noexcept { return spans_[index]; }
    std::u16string_view source() const noexcept { return *source_; }
    const ContextRef& context() const noexcept { return context_; }
    platform::Services& services() const noexcept { return services_; }

    // As it stands between the markers; a tag's name is that with a ":" at its end.
    std::u16string_view rawName(std::size_t index) const noexcept { return spans_[index].inner(*source_); }
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
    void beginTag(std::size_t index) noexcept;
    // ... and has its result at start, counted from base.
    void settle(std::size_t index, std::size_t start, std::size_t length);
    // To be called before that tag is settled.
    void keepNested(std::size_t index, NestedTags nested);
    // The target is complete: this is it.
    void finishResults(const TextRef& target);
    // The results no longer lie in the target but in this text.
    void keepResults(TextRef results);
    bool hasKeptResults() const noexcept { return results_ != nullptr; }
    // Tags that are evaluated from here on leave no result: nobody will ask.
    void forget() noexcept { forgetful_ = true; }
    bool isForgetful() const noexcept { return forgetful_; }

    // Releases what the made objects share with their parent.
    void cleanUp();

private:
    static constexpr std::uint32_t kNotEvaluated = 0xFFFFFFFF;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    struct Place {
        std::uint32_t start = kNotEvaluated;
        std::uint32_t length = 0;
    };
    struct Nested {
        std::uint32_t index;
        NestedTags tags;
    };

    std::u16string_view resultOf(const Place& place) const;
    void adoptOutcome(kvTag& tag, std::size_t index);

    platform::Services& services_;
    TextRef source_;
    std::vector<TagSpan> spans_;
    std::uint32_t firstStray_;
    ContextRef context_;
    std::vector<Place> places_;   // empty until evaluation begins
    std::vector<Nested> nested_;  // by ascending index
    std::unordered_map<std::size_t, std::shared_ptr<kvTag>> made_;
    TextRef results_;                         // the parent's finished result
    const std::u16string* target_ = nullptr;  // while it is being made
    std::size_t base_ = 0;
    std::size_t running_ = kNone;
    int evaluations_ = 0;  // running ones
    bool forgetful_ = false;
    bool toBeCleanedUp_ = false;
};

}  // namespace velmor
