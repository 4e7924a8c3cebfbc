#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace velmor {

// The text of a builder in two parts, which meet where it was last edited. Indexes are 0-based and not
// checked here. Moving the place costs the distance (amortised), so a sweep of edits from left to right
// costs the length of the text once.
//
// Whatever may fail (std::bad_alloc) fails before the text changes.
class GapText {
public:
    std::size_t size() const noexcept { return first_.size() + second().size(); }
    char16_t operator[](std::size_t index) const noexcept {
        return index < first_.size() ? first_[index] : second_[start_ + index - first_.size()];
    }
    std::u16string_view first() const noexcept { return first_; }
    std::u16string_view second() const noexcept { return {second_.data() + start_, second_.size() - start_}; }
    // The parts of [index, index + count), in order; either may be empty.
    std::array<std::u16string_view, 2> range(std::size_t index, std::size_t count) const noexcept {
        const std::size_t inFirst = index < first_.size() ? std::min(count, first_.size() - index) : 0;
        return {inFirst > 0 ? first().substr(index, inFirst) : std::u16string_view(),
                count > inFirst ? second().substr(index + inFirst - first_.size(), count - inFirst)
                                : std::u16string_view()};
    }

    // Of an empty text.
    void reserve(std::size_t size) { first_.reserve(size); }
    // `text` may be part of this one.
    void append(std::u16string_view text) {
        if (start_ != second_.size()) return replace(size(), 0, text);
        first_.append(text);
    }
    void replace(std::size_t index, std::size_t count, std::u16string_view text);
    // Cuts off the end; does not fail where nothing was edited since the text was in one piece.
    void truncate(std::size_t length) {
        moveGap(size());
        first_.resize(length);
    }

    // The text in one piece, until the next change. Costs the second part.
    std::u16string_view contiguous() {
        moveGap(size());
        return first_;
    }
    // Replaces the text; nothing is copied.
    void adopt(std::u16string&& text) noexcept { *this = GapText(std::move(text)); }
    // Gives the text away and leaves an empty one; copies the second part alone.
    std::u16string release() {
        moveGap(size());
        return std::exchange(*this, GapText()).first_;
    }

    GapText() noexcept = default;

private:
    explicit GapText(std::u16string&& text) noexcept : first_(std::move(text)) {}
    void moveGap(std::size_t index);

    std::u16string first_;
    std::u16string second_;  // from start_ on
    std::size_t start_ = 0;
};

}  // namespace velmor
