#include "text/GapText.h"

#include <algorithm>
#include <functional>
#include <new>
#include <utility>

namespace velmor {

namespace {

using Traits = std::char_traits<char16_t>;

}  // namespace

std::array<std::u16string_view, 2> GapText::range(std::size_t index, std::size_t count) const noexcept {
    const std::size_t inFirst = index < split_ ? std::min(count, split_ - index) : 0;
    const char16_t* const units = store_.data();
    return {std::u16string_view(units + index, inFirst),
            std::u16string_view(units + index + inFirst + gap(), count - inFirst)};
}

void GapText::copyTo(std::size_t index, std::size_t count, char16_t* target) const noexcept {
    for (const std::u16string_view part : range(index, count)) {
        target = Traits::copy(target, part.data(), part.size()) + part.size();
    }
}

std::u16string GapText::copy(std::size_t index, std::size_t count) const {
    const auto [left, right] = range(index, count);
    std::u16string text;
    text.reserve(count);
    return text.append(left).append(right);
}

void GapText::append(std::u16string_view text) {
    if (text.size() <= roomAtEnd()) {
        store_.append(text);
    } else if (isOurs(text)) {
        append(std::u16string(text));
    } else {
        // A wide gap has enough room. Closing it costs no more than the edits that widened it (amortised).
        if (gap() >= text.size() && gap() >= store_.capacity() / 4) {
            moveGap(size());
            dropGap();
        } else {
            rebuild(grownCapacity(size() + text.size()), 0);
        }
        store_.append(text);
    }
}

void GapText::replace(std::size_t index, std::size_t count, std::u16string_view text) {
    if (index == size()) return append(text);
    if (isOurs(text)) return replace(index, count, std::u16string(text));
    moveGap(index);
    if (gap() + count < text.size()) openGap(text.size());
    Traits::copy(store_.data() + split_, text.data(), text.size());
    split_ += text.size();
    resume_ += count;
}

void GapText::erase(std::size_t index, std::size_t count) noexcept {
    const std::size_t end = index + count;
    if (end == size()) {
        if (index <= split_) split_ = resume_ = index;
        store_.resize(index + gap());
        return;
    }
    if (index > split_) moveGap(index);
    if (end < split_) moveGap(end);
    const std::size_t inFirst = split_ - index;
    split_ -= inFirst;
    resume_ += count - inFirst;
}

void GapText::overwrite(std::size_t index, std::u16string_view text) {
    if (isOurs(text)) return overwrite(index, std::u16string(text));
    const std::size_t inFirst = range(index, text.size())[0].size();
    Traits::copy(store_.data() + index, text.data(), inFirst);
    Traits::copy(store_.data() + index + inFirst + gap(), text.data() + inFirst, text.size() - inFirst);
}

std::u16string_view GapText::contiguous() noexcept {
    if (gap() != 0 && split_ != 0) {
        const bool leftIsShorter = split_ < store_.size() - resume_;
        moveGap(leftIsShorter ? 0 : size());
        if (!leftIsShorter) dropGap();
    }
    return split_ == 0 ? second() : std::u16string_view(store_);
}

void GapText::adopt(std::u16string&& text) noexcept {
    store_ = std::move(text);
    text.clear();
    split_ = resume_ = 0;
}

std::u16string GapText::release() noexcept {
    moveGap(size());
    dropGap();
    split_ = resume_ = 0;
    return std::exchange(store_, std::u16string());
}

bool GapText::isOurs(std::u16string_view text) const noexcept {
    const std::less<const char16_t*> before;
    return !before(text.data(), store_.data()) && before(text.data(), store_.data() + store_.size());
}

void GapText::moveGap(std::size_t index) noexcept {
    char16_t* const units = store_.data();
    if (gap() != 0 && index < split_) {
        Traits::move(units + index + gap(), units + index, split_ - index);
    } else if (gap() != 0) {
        Traits::move(units + split_, units + resume_, index - split_);
    }
    resume_ = index + gap();
    split_ = index;
}

// The gap must be at the end.
void GapText::dropGap() noexcept {
    store_.resize(split_);
    resume_ = split_;
}

// Widens the gap to at least count units. The extra room is proportional to the text, so the cost of
// shifting the second part is amortised over the insertions that use it.
void GapText::openGap(std::size_t count) {
    const std::size_t wanted = count + size() / 8 + 64;
    const std::size_t added = wanted - std::min(wanted, gap());
    if (added > roomAtEnd()) return rebuild(grownCapacity(size() + wanted), wanted);
    const std::size_t end = store_.size();
    store_.resize(end + added);
    Traits::move(store_.data() + resume_ + added, store_.data() + resume_, end - resume_);
    resume_ += added;
}

void GapText::rebuild(std::size_t capacity, std::size_t gapSize) {
    std::u16string fresh;
    try {
        fresh.reserve(capacity);
    } catch (const std::bad_alloc&) {
        fresh.reserve(size() + gapSize);  // the caller's append may still need a little more
    }
    fresh.append(first());
    fresh.resize(split_ + gapSize);
    fresh.append(second());
    store_.swap(fresh);
    resume_ = split_ + gapSize;
}

// The first text is often the only one, so it gets its exact size. Later growth is generous: untouched
// memory costs almost nothing, copying does. Large texts grow less to leave memory to others.
std::size_t GapText::grownCapacity(std::size_t needed) const noexcept {
    constexpr std::size_t small = 1 << 12;
    constexpr std::size_t big = 1 << 20;
    const std::size_t grown = store_.empty()   ? needed
                              : needed < small ? needed * 2
                              : needed < big   ? needed * 8
                                               : needed + needed / 2;
    return std::min(grown, store_.max_size());
}

}  // namespace velmor
