#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "automation/Variant.h"
#include "platform/Services.h"

namespace velmor::cli {

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
};

// Visits tags in the order of their opening markers; the tags within a tag's parameters between its enter and leave.
class TagVisitor {
public:
    virtual ~TagVisitor() = default;
    virtual void enter(const TagNode& tag) = 0;
    virtual void leave() = 0;
};

// Markers and tags that were not visited.
struct UnvisitedTags {
    static constexpr std::size_t maximalDepth = 100;

    std::vector<std::size_t> unclosed;  // positions of opening markers without their closing one
    std::size_t tooDeep = 0;            // tags nested deeper than maximalDepth
};

// Evaluates nothing. Linear in the template for a given depth of nesting; holds one tag at a time.
UnvisitedTags visitTags(platform::Services& services, std::u16string_view text, TagVisitor& visitor);

}  // namespace velmor::cli
