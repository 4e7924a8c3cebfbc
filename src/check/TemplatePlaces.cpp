#include "check/TemplatePlaces.h"

#include "text/Compare.h"

namespace velmor {

TemplatePlaces::TemplatePlaces(std::u16string_view text) : lines_(text) {
    const bool hasTables = findText(text, u"\\trowd", 0, Comparison::binary) != text.npos;
    if (hasTables) tags_ = findTopLevelTags(text).tags;
}

TemplatePlaces::Place TemplatePlaces::of(std::size_t index, std::size_t position, std::size_t near) const noexcept {
    if (index > 0 && index <= tags_.size()) position = tags_[index - 1].open + std::size_t{1};
    const auto [line, column] = lines_.at(position - 1, near);
    return {position, line, column};
}

}  // namespace velmor
