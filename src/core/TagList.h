#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <vector>

#include "core/Markup.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class kvTag;
class TagList;

// What the lists of one text and of the values within it are kept in. Its memory is released at once, when the last
// of them is gone.
class KeptLists : public std::enable_shared_from_this<KeptLists> {
public:
    explicit KeptLists(TextRef text) : source(std::move(text)) {}

    // A reference that stays until these lists are released.
    const ContextRef& share(const ContextRef& context) { return shareIn(contexts_, context); }
    const BuilderRef& share(const BuilderRef& results) { return shareIn(results_, results); }
    // Releases the contexts.
    void cleanUp();

    const TextRef source;       // the outermost text
    bool hasEmptyTags = false;  // the results may hold marks of rtf/edit/EmptyParagraphs.h
    std::pmr::monotonic_buffer_resource memory;
    bool haveObjects = false;  // somebody asked for one of the tags

private:
    template <class Ref>
    static const Ref& shareIn(std::list<Ref>& shared, const Ref& ref) {
        return shared.empty() || shared.back() != ref ? shared.emplace_back(ref) : shared.back();
    }

    std::list<ContextRef> contexts_;
    std::list<BuilderRef> results_;
};

// Spares a visit to lists of which nobody asked for a tag.
struct EndKeptList {
    void operator()(TagList* list) const noexcept;
};
using KeptListRef = std::unique_ptr<TagList, EndKeptList>;

// A top-level tag of a value.
struct ListedTag {
    static constexpr std::uint32_t notEvaluated = 0xFFFFFFFF;

    TagSpan span;
    std::uint32_t resultStart = notEvaluated;  // in the list's results, of a tag without an object
    std::uint32_t resultLength = 0;
    KeptListRef nested;             // of the value that it became, if that had tags and is kept
    std::shared_ptr<kvTag> object;  // once somebody asked for it
};

// The top-level tags of one value. Most tags are evaluated without a kvTag object: readers and
// handlers get one when they ask for it, and always the same one.
class TagList {
public:
    // A list that nobody will ask for its tags once it is evaluated. The text, the context and the results must last as
    // long.
    TagList(platform::Services& services, std::u16string_view text, const TopLevelTags& tags, const ContextRef& context)
        : TagList(services, text, tags, context, nullptr) {}
    // A list that is kept: of the outermost text, which is the source of `lists`, ...
    static KeptListRef keep(platform::Services& services, std::u16string_view text, const TopLevelTags& tags,
                            const ContextRef& context, KeptLists& lists);
    // ... and of a value that one of its tags became, which may be a part of its text. Null when too much is kept by
    // now, and in a list that is not kept.
    KeptListRef keepNested(std::u16string_view value, bool isPart, const TopLevelTags& tags, const ContextRef& context);
    ~TagList();
    TagList(const TagList&) = delete;
    TagList& operator=(const TagList&) = delete;

    std::size_t size() const noexcept { return tags_.size(); }
    // The first opening marker of the text that lies in none of the tags.
    std::size_t firstStray() const noexcept { return firstStray_; }
    const TagSpan& span(std::size_t index) const noexcept { return tags_[index].span; }
    std::u16string_view text() const noexcept { return text_; }
    const ContextRef& context() const noexcept { return *context_; }
    platform::Services& services() const noexcept { return services_; }
    bool isKept() const noexcept { return lists_ != nullptr; }

    // As it is written between the markers; a tag's name is that with a ":" at its end.
    std::u16string_view rawName(std::size_t index) const noexcept { return tags_[index].span.inner(text_); }

    std::shared_ptr<kvTag> item(std::size_t index);
    // Null while nobody asked for the object.
    const std::shared_ptr<kvTag>& object(std::size_t index) const noexcept { return tags_[index].object; }

    // --- for the evaluation ---

    // In between, a clean-up waits: a handler may ask for it.
    void beginEvaluation() noexcept { ++evaluations_; }
    void endEvaluation();
    // The results of the tags are appended to this text.
    void beginResults(const BuilderRef& results);
    // They lie in another text, `distance` units nearer to its start.
    void moveResults(const BuilderRef& results, std::size_t distance);
    // A tag is being answered without an object of its own ...
    void beginTag(std::size_t index) noexcept { running_ = index; }
    // ... and has its result.
    void settle(std::size_t index, std::size_t start, std::size_t length, KeptListRef nested);
    // The same for a tag that was answered by its object, which goes when nobody else holds it and
    // nothing would be lost.
    void settleObject(std::size_t index, std::size_t start, std::size_t length);

    // Releases what the objects share with their parent.
    void cleanUp();

private:
    static constexpr std::size_t noTag = static_cast<std::size_t>(-1);

    friend struct EndKeptList;
    TagList(platform::Services& services, std::u16string_view text, const TopLevelTags& tags, const ContextRef& context,
            KeptLists* lists);
    void adoptOutcome(ListedTag& entry);
    bool isSpare(const kvTag& tag, std::size_t index) const;

    platform::Services& services_;
    const std::u16string_view text_;
    KeptLists* const lists_;  // null when it is not kept
    std::pmr::vector<ListedTag> tags_;
    const std::uint32_t firstStray_;
    const ContextRef* context_;            // null itself after cleanUp
    const BuilderRef* results_ = nullptr;  // null before the evaluation
    std::size_t running_ = noTag;
    int evaluations_ = 0;  // running ones
    bool toBeCleanedUp_ = false;
};

// The name of a tag that is written so between its markers.
std::u16string storedName(std::u16string_view rawName);

}  // namespace velmor
