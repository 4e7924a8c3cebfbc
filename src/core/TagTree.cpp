#include "core/TagTree.h"

#include <memory>
#include <utility>

#include "core/Markup.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"

namespace velmor {
namespace {

TagNode parseTag(platform::Services& services, std::u16string_view text, const TagSpan& span) {
    TagNode node;
    node.position = span.open + std::size_t{1};
    node.length = span.end() - span.open;
    const auto tag = std::make_shared<kvTag>(services);
    tag->Name(span.inner(text));
    if (span.inner(text).find(handlerSeparator) == text.npos) return node;
    node.handler = tag->HandlerName();
    node.command = tag->CommandName();
    node.commandValue = tag->CommandValue();
    const auto elements = tag->Elements();
    for (std::int32_t index = 3; index <= elements->Count(); ++index) {
        const auto element = elements->Item(index);
        node.parameters.push_back({element->Name(), element->Value()});
    }
    return node;
}

// The template, or a tag that may contain the next one.
struct Level {
    std::size_t end;
    TagNode tag = {};
    std::size_t resume = 0;  // markers before this place are skipped
};

}  // namespace

UnvisitedTags visitTags(platform::Services& services, std::u16string_view text,
                        const std::function<void(const TagNode&)>& visit) {
    UnvisitedTags unvisited;
    std::vector<Level> levels = {{text.npos}};
    const auto leaveTo = [&](std::size_t place) {
        while (place >= levels.back().end) {
            TagNode tag = std::move(levels.back().tag);
            levels.pop_back();
            if (levels.size() == 1) {
                visit(tag);
            } else {
                levels.back().tag.tags.push_back(std::move(tag));
            }
        }
    };
    for (const TagSpan& span : findMarkerPairs(text)) {
        leaveTo(span.open);
        if (!span.complete()) {
            unvisited.unclosed.push_back(span.open + std::size_t{1});
            levels.back().resume = span.open + closingMarker.size();
        } else if (levels.size() > UnvisitedTags::maximalDepth) {
            ++unvisited.tooDeep;
        } else if (span.open >= levels.back().resume) {
            levels.push_back({span.close, parseTag(services, text, span)});
        }
    }
    leaveTo(text.size());
    return unvisited;
}

}  // namespace velmor
