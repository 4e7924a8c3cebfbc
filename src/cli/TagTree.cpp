#include "cli/TagTree.h"

#include <memory>

#include "core/Markup.h"
#include "core/kvTag.h"
#include "properties/privProperties.h"
#include "properties/privProperty.h"

namespace velmor::cli {
namespace {

TagNode parseTag(platform::Services& services, std::u16string_view text, const TagSpan& span) {
    TagNode node;
    node.position = span.open + std::size_t{1};
    node.length = span.end() - span.open;
    const auto tag = std::make_shared<kvTag>(services);
    tag->Name(span.inner(text));
    if (span.inner(text).find(kHandlerSeparator) == text.npos) return node;
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

// The tags within which the next one may stand, innermost last.
struct Level {
    std::vector<TagNode>* tags;
    std::size_t end;         // of the tag that holds them
    std::size_t resume = 0;  // markers before this place are passed over
};

}  // namespace

TagTree readTagTree(platform::Services& services, std::u16string_view text) {
    TagTree tree;
    std::vector<Level> levels = {{&tree.tags, text.npos}};
    for (const TagSpan& span : findMarkerPairs(text)) {
        while (span.open >= levels.back().end) levels.pop_back();
        if (!span.complete()) {
            tree.unclosed.push_back(span.open + std::size_t{1});
            levels.back().resume = span.open + kClosingMarker.size();
        } else if (levels.size() > TagTree::maximalDepth) {
            ++tree.tooDeep;
        } else if (span.open >= levels.back().resume) {
            levels.back().tags->push_back(parseTag(services, text, span));
            levels.push_back({&levels.back().tags->back().tags, span.close});
        }
    }
    return tree;
}

}  // namespace velmor::cli
