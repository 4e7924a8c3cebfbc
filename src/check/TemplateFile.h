#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "check/Diagnostic.h"
#include "check/LineIndex.h"
#include "check/VisibleText.h"
#include "core/Markup.h"

namespace velmor {

// A tag of a story, complete or not.
struct TemplateTag {
    static constexpr std::uint32_t noTag = 0xFFFFFFFF;

    std::uint32_t story = 0;
    TagSpan span;                  // in the story's text
    std::uint32_t parent = noTag;  // the complete tag around it
    std::uint32_t depth = 0;       // tags around it
    std::uint32_t next = 0;        // the first tag after it that is not within it
};

// One file of a template: its source, its stories and their tags, in the order of the stories.
class TemplateFile {
public:
    TemplateFile(std::u16string name, std::u16string source, std::vector<SourcePlace> includedFrom);

    const std::u16string& name() const noexcept { return name_; }
    const std::u16string& source() const noexcept { return source_; }
    const std::vector<Story>& stories() const noexcept { return text_.stories; }
    // Of the RTF, if it is a document.
    const std::vector<RtfFault>& faults() const noexcept { return text_.faults; }
    const std::vector<TemplateTag>& tags() const noexcept { return tags_; }
    // The tags that included this file, the nearest first.
    const std::vector<SourcePlace>& includedFrom() const noexcept { return includedFrom_; }

    const Story& storyOf(const TemplateTag& tag) const noexcept { return stories()[tag.story]; }
    // Between the markers, as the author sees it. The tag must be complete.
    std::u16string_view innerOf(const TemplateTag& tag) const noexcept { return tag.span.inner(storyOf(tag).text()); }
    // What an author sees at a 0-based index of the source: the next character after it, whichever story has it.
    struct Seen {
        const Story& story;
        std::size_t unit;
    };
    Seen seenAt(std::size_t index) const;
    // Of a 0-based index of the source.
    SourcePlace placeOf(std::size_t index) const;
    // Of the tag's opening marker.
    SourcePlace placeOf(const TemplateTag& tag) const { return placeOf(storyOf(tag).source(tag.span.open).begin); }

private:
    void findTags(std::uint32_t story);

    std::u16string name_;
    std::u16string source_;
    std::vector<SourcePlace> includedFrom_;
    mutable std::optional<LineIndex> lines_;  // once a place was asked for
    VisibleText text_;
    std::vector<TemplateTag> tags_;
};

}  // namespace velmor
