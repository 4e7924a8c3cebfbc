#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// The text of a builder as a gap buffer: a first part, a gap, a second part. Indexes are 0-based
// and not checked here. Text comes and goes at the gap; moving it costs the distance, so a sweep
// of edits from left to right costs the length of the text once. Appending extends the second part
// in place and leaves the gap where it is.
//
// Whatever may fail (std::bad_alloc) fails before the text changes.
class GapText {
public:
    std::size_t size() const noexcept { return store_.size() - gap(); }
    char16_t operator[](std::size_t index) const noexcept { return store_[index < split_ ? index : index + gap()]; }
    std::u16string_view first() const noexcept { return {store_.data(), split_}; }
    std::u16string_view second() const noexcept { return {store_.data() + resume_, store_.size() - resume_}; }
    // The parts of [index, index + count), in order; either may be empty.
    std::array<std::u16string_view, 2> range(std::size_t index, std::size_t count) const noexcept;
    std::u16string copy(std::size_t index, std::size_t count) const;
    void copyTo(std::size_t index, std::size_t count, char16_t* target) const noexcept;

    std::size_t roomAtEnd() const noexcept { return store_.capacity() - store_.size(); }
    // text.size() <= roomAtEnd(), and text is not ours.
    void appendInRoom(std::u16string_view text) { store_.append(text); }
    void append(std::u16string_view text);
    // Of an empty text.
    void reserve(std::size_t size) { store_.reserve(size); }
    void replace(std::size_t index, std::size_t count, std::u16string_view text);
    void erase(std::size_t index, std::size_t count) noexcept;
    void overwrite(std::size_t index, std::u16string_view text);
    template <typename Map>
    void transform(std::size_t index, std::size_t count, Map map) {
        for (const std::u16string_view part : range(index, count)) {
            char16_t* const unit = store_.data() + (part.data() - store_.data());
            for (std::size_t i = 0; i < part.size(); ++i) unit[i] = map(unit[i]);
        }
    }

    // Closes the gap, moving the shorter part. The view holds until the next change.
    std::u16string_view contiguous() noexcept;
    // Replaces the text; nothing is copied.
    void adopt(std::u16string&& text) noexcept;
    // Gives the text away and leaves an empty one; copies nothing but what closes the gap.
    std::u16string release() noexcept;

private:
    std::size_t gap() const noexcept { return resume_ - split_; }
    bool isOurs(std::u16string_view text) const noexcept;
    void moveGap(std::size_t index) noexcept;
    void dropGap() noexcept;
    void openGap(std::size_t count);
    void rebuild(std::size_t capacity, std::size_t gapSize);
    std::size_t grownCapacity(std::size_t needed) const noexcept;

    // [0, split_) is the first part, [resume_, store_.size()) the second; the gap is
    // in between. split_ <= resume_ <= store_.size().
    std::u16string store_;
    std::size_t split_ = 0;
    std::size_t resume_ = 0;
};

}  // namespace velmor
