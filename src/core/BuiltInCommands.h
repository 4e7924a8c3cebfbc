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

// What a command gives.
struct CommandAnswer {
    CommandAnswer() = default;
    CommandAnswer(std::u16string value) : text(std::move(value)) {}
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

// Answers a tag of the handler "TAG". An unknown command, and one that lacks an element or cannot read its file, yields
// "". The value is not escaped, and its tags are not evaluated. `psName`: the tag's name, with its final ":";
// `elements`: the tag's, null if they are to be built from the name. All collections of the context must exist.
CommandAnswer answerCommand(platform::Services& services, const ContextRef& context, std::u16string_view psName,
                            privProperties* elements = nullptr);

// The parts of a tag "TAG>PROPERTY:name=default:" (its final ":" may be absent), without a full parse. Nothing if
// it needs the full parse.
struct PlainProperty {
    std::u16string_view name;
    std::u16string_view value;  // when the property is absent
    bool hasDefault;            // one that is not empty
};
std::optional<PlainProperty> plainProperty(std::u16string_view psName);
// The value of such a tag: the default, which is a part of the name, or the property's text. That lasts until the
// property changes, or as long as `buffer`, which receives it where no property holds it as a text. Nothing if the tag
// needs the full parse.
struct PropertyText {
    std::u16string_view text;
    Origin origin;  // property, or author for the default
};
std::optional<PropertyText> propertyText(std::u16string_view psName, const TagContext& context, std::u16string& buffer);

// A file as INCLUDE in the tag of that name takes it; nothing, with an entry in the error log, if it may not or cannot
// be read.
std::optional<std::u16string> includedText(platform::Services& services, const ContextRef& context,
                                           std::u16string_view psName, std::u16string_view psFile);

// The names of all commands, in upper case.
std::vector<std::u16string> commandNames();
// Where INCLUDE finds a file: in the folder, unless its name has a path of its own.
std::u16string includedPath(std::u16string_view psFile, std::u16string folder, char16_t separator);
// Whether INCLUDE takes one entry of the file rather than its text.
bool isListFile(std::u16string_view path);

}  // namespace velmor
