#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/TagContext.h"
#include "handlers/ITag4.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;
class privProperty;

// What a command gives.
struct CommandAnswer {
    CommandAnswer() = default;
    CommandAnswer(std::u16string value) : text(std::move(value)) {}
    CommandAnswer(const char16_t* value) : text(value) {}
    // Nothing, because what has that name is absent.
    static CommandAnswer missing(std::u16string_view name) {
        CommandAnswer answer;
        answer.absent = name;
        return answer;
    }

    std::u16string text;
    Origin origin = Origin::author;
    std::u16string absent;
};

// The commands of the handler "TAG", for one tag. An unknown command, and one that lacks an element or cannot
// read its file, yields "". The value is not escaped, and its tags are not evaluated.
class BuiltInCommands {
public:
    static constexpr std::u16string_view handler = builtInHandler;

    // psName: the tag's name, with its final ":". All collections of the context must exist.
    BuiltInCommands(platform::Services& services, const ContextRef& context, std::u16string_view psName)
        : services_(services), context_(context), name_(psName) {}

    // With the tag's elements.
    CommandAnswer run(privProperties& elements) const;
    // With elements built from its name.
    CommandAnswer run() const;

    // The parts of a tag "TAG>PROPERTY:name=default:" (its final ":" may be absent), without a full parse. Nothing if
    // it needs the full parse.
    struct PlainProperty {
        std::u16string_view name;
        std::u16string_view value;  // when the property is absent
        bool hasDefault;            // one that is not empty
    };
    static std::optional<PlainProperty> plainProperty(std::u16string_view psName);
    // The value of such a tag: the default, or the property's text (see Collection::textOf).
    struct PropertyText {
        std::u16string_view text;
        Origin origin;  // property, or author for the default
    };
    static std::optional<PropertyText> property(std::u16string_view psName, const TagContext& context,
                                                std::u16string& buffer);

    // A file as INCLUDE takes it; nothing, with an entry in the error log, if it may not or cannot be read.
    std::optional<std::u16string> fileText(std::u16string_view psFile) const;

    // The names of all commands, in upper case.
    static std::vector<std::u16string> names();
    // Where INCLUDE finds a file: in the folder, unless its name has a path of its own.
    static std::u16string pathOf(std::u16string_view psFile, std::u16string folder, char16_t separator);
    // Whether INCLUDE takes one entry of the file rather than its text.
    static bool isListFile(std::u16string_view path);

private:
    struct Command;
    static const std::vector<Command>& commands();
    static const Command* find(std::u16string_view psCommand);

    CommandAnswer setProperty(privProperties& elements) const;
    CommandAnswer property(privProperties& elements) const;
    CommandAnswer include(privProperties& elements) const;
    CommandAnswer setPath(privProperties& elements) const;
    CommandAnswer privateVariable(privProperties& elements) const;
    CommandAnswer dumpPrivateVariable(privProperties& elements) const;

    CommandAnswer privateAnswer(privProperty& parameter, std::u16string value) const;
    std::u16string_view asWritten(const std::u16string& psName) const;
    std::u16string commandValue(privProperties& elements) const;
    std::u16string fullPath(std::u16string_view psFile) const;
    CommandAnswer listEntry(std::u16string_view psList, privProperties& elements) const;
    // False, with an entry in the error log, when compressed values exceed their limit.
    bool build(privProperties& elements, std::u16string_view text, bool isTag) const;
    std::u16string processed(std::u16string text) const;
    std::u16string onlyDocument(std::u16string text, std::u16string_view path) const;
    bool mayInclude(std::u16string_view path) const;
    void logError(std::u16string_view message, std::u16string_view errorData) const;
    void put(std::u16string_view psName, automation::Variant value) const;

    platform::Services& services_;
    const ContextRef& context_;
    std::u16string_view name_;
};

}  // namespace velmor
