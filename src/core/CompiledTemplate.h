#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "core/Markup.h"
#include "core/PlainTemplate.h"
#include "core/TagContext.h"
#include "platform/Services.h"

namespace velmor {

// A template whose tags have been found, for any number of evaluations (kvTag::Value). It does not change, so several
// threads may use it at once.
class CompiledTemplate {
public:
    // Brackets tables and finds the top-level tags. `handler` is for the timing log. Linear in the text.
    explicit CompiledTemplate(platform::Services& services, std::u16string text, std::u16string_view handler = {});

    const TextRef& text() const noexcept { return text_; }
    const TopLevelTags& tags() const noexcept { return tags_; }
    bool isRtf() const noexcept { return isRtf_; }

private:
    const bool isRtf_;
    TextRef text_;
    TopLevelTags tags_;
};

// A template for many evaluations.
struct PreparedTemplate {
    PreparedTemplate(platform::Services& services, std::u16string text)
        : compiled(services, std::move(text)), plain(*compiled.text(), compiled.tags()) {}

    const CompiledTemplate compiled;
    const PlainTemplate plain;
};

}  // namespace velmor
