#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "check/LineIndex.h"
#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {

// The places of a template's outermost tags in its file. Evaluation counts in a text that has table markers in addition
// and lacks repeated row definitions.
class TemplatePlaces {
public:
    struct Place {
        std::size_t position;  // of the opening marker, from 1 like line and column
        std::size_t line;
        std::size_t column;
    };

    explicit TemplatePlaces(std::u16string_view text) : lines_(text) {
        const bool hasTables = findText(text, u"\\trowd", 0, Comparison::binary) != text.npos;
        if (hasTables) tags_ = findTopLevelTags(text).tags;
    }

    // `index` and `position` as evaluation has them, both from 1. Costs less if the tag is in line `near` or the next
    // one.
    Place of(std::size_t index, std::size_t position, std::size_t near = 1) const noexcept {
        if (index > 0 && index <= tags_.size()) position = tags_[index - 1].open + std::size_t{1};
        const auto [line, column] = lines_.at(position - 1, near);
        return {position, line, column};
    }

private:
    const LineIndex lines_;
    std::vector<TagSpan> tags_;  // of a text that evaluation may change
};

}  // namespace velmor
