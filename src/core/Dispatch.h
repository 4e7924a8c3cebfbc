#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/EvaluationRun.h"
#include "core/Markup.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class kvTag;

// A tag that is to be answered.
struct TagRequest {
    platform::Services& services;
    const ContextRef& context;  // every collection is there
    std::u16string_view name;   // its final ":" may be missing
    // Its object. Only the built-in commands answer a tag without one.
    std::shared_ptr<kvTag> tag;
    // True when nothing in the name needs an escape.
    bool isFit = false;
};

// The value that a tag becomes.
struct TagAnswer {
    // False when the tag keeps the value that it has: its handler is missing, too old, or failed.
    bool hasValue = false;
    bool isRtf = false;       // a document
    bool isSearched = false;  // its tags are known; a message's are not sought
    std::u16string text;
    // The value if it is not `text`, else empty. It needs no escape. Either a part of the tag's name or the text of a
    // property, which stays until that changes.
    std::u16string_view view;
    bool isPart = false;  // the view is a part of the tag's name
    TopLevelTags tags;
    Origin origin = Origin::author;  // of the value

    std::u16string_view value() const noexcept { return view.empty() ? std::u16string_view(text) : view; }
};

// True when a tag of this name needs its object to be answered.
bool needsObject(std::u16string_view name) noexcept;

// Answers one tag: resolves its handler, counts it, has the built-in command or the handler give the
// value, fits that into RTF where the tag is protected, and finds its tags; writes the lines of the
// timing log. What a handler raises goes to the error log; only std::bad_alloc comes out.
TagAnswer dispatch(const TagRequest& request);

// The handler's name, without its group, as dispatch takes it from a tag's name.
std::u16string handlerName(std::u16string_view name);

// The top-level tags of a text, for whose handler the timing log gets its line.
TopLevelTags searchTags(platform::Services& services, std::u16string_view handler, std::u16string_view text);

// Escapes and brackets tables for a text that goes into RTF; true when the text is itself a complete
// RTF document.
bool fitIntoRtf(platform::Services& services, bool protect, std::u16string& value);

// Whether the tags of a text with this context are evaluated. Writes the entry that the rules ask for if the text is
// not the author's.
bool admitsTags(platform::Services& services, const TagContext& context, std::u16string_view handler,
                std::u16string_view tagName = {});

// Writes the limit's one entry of this run.
void reportLimit(platform::Services& services, const TagContext& context, EvaluationLimit limit,
                 std::u16string_view handler, std::u16string_view tagName);

}  // namespace velmor
