#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "check/TemplateFile.h"
#include "platform/Services.h"
#include "properties/privProperties.h"

namespace velmor {

// A sound tag's elements, parsed as evaluation parses them, but from the text that the author sees.
class TagParts {
public:
    static constexpr std::int32_t kFirstParameter = 3;

    TagParts(platform::Services& services, const TemplateFile& file, const TemplateTag& tag);

    const TemplateFile& file() const noexcept { return file_; }
    const TemplateTag& tag() const noexcept { return tag_; }
    // In upper case, with its group.
    const std::u16string& handler() const noexcept { return handler_; }
    // In upper case; empty when there is none.
    const std::u16string& command() const noexcept { return command_; }
    std::u16string commandValue() const;
    // The elements; the first parameter has the index kFirstParameter.
    privProperties& elements() const noexcept { return *elements_; }
    // The first parameter's name as the author writes it: its elements are in upper case.
    std::u16string parameterName() const;
    // Whether a "=" follows it: a name alone has the value 0.
    bool parameterHasValue() const;

private:
    TextRange parameterRange() const;

    const TemplateFile& file_;
    const TemplateTag& tag_;
    std::u16string handler_;
    std::u16string command_;
    std::shared_ptr<privProperties> elements_;
};

// True when a text is known before evaluation: it holds no tag.
bool isLiteral(std::u16string_view text) noexcept;

}  // namespace velmor
