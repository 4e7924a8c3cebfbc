#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Variant.h"
#include "platform/Services.h"

namespace velmor {

// One tag of a template, parsed as evaluation parses it.
struct TagNode {
    struct Parameter {
        std::u16string name;
        automation::Variant value;  // the long 0 for a name alone
    };

    std::size_t position = 0;  // of its opening marker within the template, from 1
    std::size_t length = 0;    // from there to the end of its closing marker
    std::u16string handler;    // empty when the tag names none; its result is empty
    std::u16string command;
    automation::Variant commandValue;
    std::vector<Parameter> parameters;
    std::vector<TagNode> tags;  // within its parameters
};

// Markers and tags that were left out.
struct UnvisitedTags {
    static constexpr std::size_t maximalDepth = 100;

    std::vector<std::size_t> unclosed;  // positions of opening markers without their closing one
    std::size_t tooDeep = 0;            // tags nested deeper than maximalDepth
};

// Hands out each outermost tag, in the order of the opening markers. Evaluates nothing. Linear in the template
// for a given depth of nesting; holds one outermost tag at a time.
UnvisitedTags visitTags(platform::Services& services, std::u16string_view text,
                        const std::function<void(const TagNode&)>& visit);

}  // namespace velmor
