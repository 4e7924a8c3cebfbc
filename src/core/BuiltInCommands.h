#pragma once

#include <string>
#include <string_view>

#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;

// The commands of the handler "TAG". A command that is not known, lacks an element or cannot read
// its file yields "". The value is as the command yields it: not escaped, its tags not evaluated.
class BuiltInCommands {
public:
    // The context's collections must all be there.
    BuiltInCommands(platform::Services& services, const ContextRef& context) : services_(services), context_(context) {}

    // psName: a tag's name, with its final ":".
    std::u16string run(std::u16string_view psName) const;

    // Appends the value of a tag "TAG>PROPERTY:name=default:" (its final ":" may be missing)
    // without parsing it in full. False, and nothing appended, where only that would tell.
    static bool appendProperty(std::u16string_view psName, const TagContext& context, std::u16string& target);

private:
    struct Command;
    static const Command* find(std::u16string_view psCommand) noexcept;

    std::u16string setProperty(privProperties& elements) const;
    std::u16string property(privProperties& elements) const;
    std::u16string include(privProperties& elements) const;
    std::u16string setPath(privProperties& elements) const;
    std::u16string privateVariable(privProperties& elements) const;
    std::u16string dumpPrivateVariable(privProperties& elements) const;

    std::u16string commandValue(privProperties& elements) const;
    std::u16string fullPath(std::u16string_view psFile) const;
    std::u16string listEntry(std::u16string_view psList, privProperties& elements) const;
    std::u16string processed(std::u16string text) const;
    void put(std::u16string_view psName, automation::Variant value) const;

    platform::Services& services_;
    const ContextRef& context_;
};

}  // namespace velmor
