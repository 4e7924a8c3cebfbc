#include "rtf/merge/NumberMap.h"

namespace velmor {

void NumberMap::set(std::u16string_view number, std::int32_t value) {
    const std::size_t index = shortIndex(number);
    if (index == notShort) {
        long_.emplace(number, value);
        return;
    }
    if (index >= short_.size()) short_.resize(index + 1, none);
    if (short_[index] != none) return;
    set_.push_back(static_cast<std::uint32_t>(index));
    short_[index] = value;
}

std::u16string_view NumberTexts::of(std::int32_t number) {
    const auto index = static_cast<std::size_t>(number);
    if (index >= shortNumbers) return long_.try_emplace(number, decimal(number)).first->second;
    while (texts_.size() <= index) texts_.push_back(decimal(static_cast<std::int32_t>(texts_.size())));
    return texts_[index];
}

}  // namespace velmor
