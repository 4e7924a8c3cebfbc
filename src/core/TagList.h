#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/Markup.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class kvTag;
class TagList;

// A top-level tag of a value.
struct ListedTag {
    static constexpr std::uint32_t kNotEvaluated = 0xFFFFFFFF;

    TagSpan span;
    std::uint32_t resultStart = kNotEvaluated;  // in the list's results, of a tag without an object
    std::uint32_t resultLength = 0;
    std::unique_ptr<TagList> nested;  // of the value that it became, if that had tags and is kept
    std::shared_ptr<kvTag> object;    // once somebody asked for it
};

// The top-level tags of one value. Most tags are evaluated without a kvTag object: readers and
// handlers get one when they ask for it, and always the same one.
class TagList {
public:
    // The text is the source or a part of it. Nobody will ask for the tags of a list that is not kept
    // once it is evaluated.
    TagList(platform::Services& services, TextRef source, std::u16string_view text, const TopLevelTags& tags,
            ContextRef context, bool isKept = true);
    ~TagList();
    TagList(const TagList&) = delete;
    TagList& operator=(const TagList&) = delete;

    std::size_t size() const noexcept { return tags_.size(); }
    // The first opening marker of the text that lies in none of the tags.
    std::size_t firstStray() const noexcept { return firstStray_; }
    const TagSpan& span(std::size_t index) const noexcept { return tags_[index].span; }
    std::u16string_view text() const noexcept { return text_; }
    const TextRef& source() const noexcept { return source_; }
    const ContextRef& context() const noexcept { return context_; }
    platform::Services& services() const noexcept { return services_; }
    bool isKept() const noexcept { return isKept_; }
    // What keeping it takes.
    std::size_t keptBytes(bool hasOwnText) const noexcept {
        return sizeof *this + tags_.size() * sizeof(ListedTag) + (hasOwnText ? text_.size() * sizeof(char16_t) : 0);
    }

    // As it is written between the markers; a tag's name is that with a ":" at its end.
    std::u16string_view rawName(std::size_t index) const noexcept { return tags_[index].span.inner(text_); }

    std::shared_ptr<kvTag> item(std::size_t index);
    // Null while nobody asked for the object.
    std::shared_ptr<kvTag> object(std::size_t index) const { return tags_[index].object; }

    // --- for the evaluation ---

    // In between, a clean-up waits: a handler may ask for it.
    void beginEvaluation() noexcept { ++evaluations_; }
    void endEvaluation();
    // The results of the tags are appended to this text.
    void beginResults(BuilderRef results) { results_ = std::move(results); }
    // They lie in another text, `distance` units nearer to its start.
    void moveResults(const BuilderRef& results, std::size_t distance);
    // A tag is being answered without an object of its own ...
    void beginTag(std::size_t index) noexcept { running_ = index; }
    // ... and has its result.
    void settle(std::size_t index, std::size_t start, std::size_t length, std::unique_ptr<TagList> nested);
    // The same for a tag that was answered by its object, which goes when nobody else holds it and
    // nothing would be lost.
    void settleObject(std::size_t index, std::size_t start, std::size_t length);

    // Releases what the objects share with their parent.
    void cleanUp();

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    void adoptOutcome(ListedTag& entry);
    TextRef ownSource();
    bool isSpare(const kvTag& tag, std::size_t index) const;

    platform::Services& services_;
    TextRef source_;
    std::u16string_view text_;
    std::vector<ListedTag> tags_;
    const std::uint32_t firstStray_;
    ContextRef context_;
    BuilderRef results_;
    std::size_t running_ = kNone;
    int evaluations_ = 0;  // running ones
    const bool isKept_;
    bool toBeCleanedUp_ = false;
};

// The name of a tag that is written so between its markers.
std::u16string storedName(std::u16string_view rawName);

}  // namespace velmor
