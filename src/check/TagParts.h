#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "check/TemplateFile.h"
#include "platform/Services.h"
#include "properties/privProperty.h"

namespace velmor {

// An element of a tag, "name" or "name=value", as the author sees it.
class TagElement {
public:
    // `text` without the separator that follows.
    TagElement(std::u16string_view text, std::size_t nameSize) : text_(text), nameSize_(nameSize) {}

    // As the author writes it, without white space before it.
    std::u16string name() const;
    // Whether a "=" follows the name: a name alone has the value 0.
    bool hasValue() const noexcept { return nameSize_ < text_.size(); }
    bool isEmptyText() const noexcept;
    // After the "="; empty if there is none.
    std::u16string_view writtenValue() const noexcept { return text_.substr(hasValue() ? nameSize_ + 1 : nameSize_); }
    // As evaluation reads it; never null.
    PropertyRef read(platform::Services& services) const;
    std::u16string value(platform::Services& services) const { return read(services)->ValueStr(); }

private:
    std::u16string_view text_;
    std::size_t nameSize_;
};

// A sound tag's elements, separated as evaluation separates them, but in the text that the author sees.
class TagParts {
public:
    TagParts(const TemplateFile& file, const TemplateTag& tag);
    TagParts(const TagParts&) = delete;
    TagParts& operator=(const TagParts&) = delete;

    const TemplateFile& file() const noexcept { return file_; }
    const TemplateTag& tag() const noexcept { return tag_; }
    // In upper case, with its group.
    const std::u16string& handler() const noexcept { return handler_; }
    // In upper case; empty when there is none.
    const std::u16string& command() const noexcept { return command_; }
    const TagElement& commandElement() const noexcept { return commandElement_; }
    // "" when there is no command.
    std::u16string commandValue(platform::Services& services) const;
    // The elements after the command.
    const std::vector<TagElement>& parameters() const noexcept { return parameters_; }
    // Null when no parameter has the name.
    const TagElement* find(std::u16string_view name) const;

private:
    void readElements(std::u16string_view text);

    const TemplateFile& file_;
    const TemplateTag& tag_;
    std::u16string handler_;
    std::u16string command_;
    std::u16string closed_;  // the text, when it does not end with a separator itself
    std::vector<TagElement> parameters_;
    TagElement commandElement_{{}, 0};
};

// True when a text is known before evaluation: it holds no tag.
bool isLiteral(std::u16string_view text) noexcept;

}  // namespace velmor
