#include "text/GapText.h"

namespace velmor {

void GapText::replace(std::size_t index, std::size_t count, std::u16string_view text) {
    if (index + count == first_.size()) {
        first_.replace(index, count, text);
        return;
    }
    const std::u16string kept(text);  // it may be part of what moves
    moveGap(index + count);
    first_.replace(index, count, kept);
}

void GapText::moveGap(std::size_t index) {
    if (index >= first_.size()) {
        const std::size_t moved = index - first_.size();
        first_.append(second_, start_, moved);
        start_ += moved;
        return;
    }
    const std::size_t moved = first_.size() - index;
    if (moved > start_) {  // room in proportion to the text: the next moves do not shift it again
        const std::size_t added = moved - start_ + second().size();
        second_.insert(0, added, u'\0');
        start_ += added;
    }
    start_ -= moved;
    first_.copy(second_.data() + start_, moved, index);
    first_.resize(index);
}

}  // namespace velmor
