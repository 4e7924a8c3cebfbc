#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/Markup.h"
#include "platform/Services.h"

namespace velmor {

class privProperties;

// What many letters are: text, not RTF, all of whose tags insert properties. Their result is put together without an
// evaluation, where that would give the same.
class PlainTemplate {
public:
    // The text must last.
    PlainTemplate(std::u16string_view text, const TopLevelTags& tags);

    // Nothing if it takes an evaluation: another kind of template, a value that is RTF or may hold a tag, a rule, a
    // limit, a log or a listener, or one that is running on this thread.
    std::optional<std::u16string> result(platform::Services& services, const privProperties& properties) const;

private:
    struct Piece {
        std::u16string_view text;  // before the tag
        std::u16string_view name;
        std::u16string_view value;  // when the property is absent
    };

    bool add(const TagSpan& tag);

    const std::u16string_view text_;
    std::vector<Piece> pieces_;  // empty if the template is of another kind
    std::size_t end_ = 0;        // of the last tag
};

}  // namespace velmor
