#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "automation/Object.h"
#include "core/Collection.h"
#include "text/RtfStart.h"

namespace velmor {

class privStrCat;

// Texts and results that tags share with their tag lists.
using TextRef = std::shared_ptr<const std::u16string>;
using BuilderRef = std::shared_ptr<privStrCat>;

// Where a text's tags come from. What data includes is data.
enum class Origin : std::uint8_t {
    author,    // the template
    file,      // a file that the author's text includes
    property,  // a value of the property collection
    handler,   // a handler's answer, or a text that a handler has evaluated
};

inline bool isAuthors(Origin origin) noexcept {
    return origin == Origin::author || origin == Origin::file;
}

// What a tag hands down to its child tags: references to the same collections and objects, and
// the protection flag as it was when they were copied.
struct TagContext {
    Collection properties;
    Collection variables;
    std::shared_ptr<privProperties> privateVariables;
    std::shared_ptr<privProperties> errorLog;
    automation::ObjectRef database;
    bool protectRtf = false;
    Origin origin = Origin::author;  // author's unless EvaluationRun::tracksOrigins
};

using ContextRef = std::shared_ptr<const TagContext>;

// The same with that value of a member.
template <class Value>
ContextRef contextWith(Value TagContext::*member, Value value, const ContextRef& context) {
    if ((*context).*member == value) return context;
    auto changed = std::make_shared<TagContext>(*context);
    (*changed).*member = value;
    return changed;
}
inline ContextRef protectedContext(const ContextRef& context) {
    return contextWith(&TagContext::protectRtf, true, context);
}

}  // namespace velmor
