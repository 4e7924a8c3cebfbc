#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor {

// What stands in a builder's buffer behind the content: stale characters, then blanks. Only the
// stale ones are held, last first; the blanks are a number.
class SpareTail {
public:
    std::size_t size() const noexcept { return stale_.size() + blanks_; }
    bool isBlank() const noexcept { return stale_.empty(); }
    char16_t operator[](std::size_t index) const noexcept {
        return index < stale_.size() ? stale_[stale_.size() - 1 - index] : u' ';
    }

    void addBlanks(std::size_t count) noexcept { blanks_ += count; }
    void dropBlanks(std::size_t count) noexcept { blanks_ -= count; }
    // Drops the first count characters.
    void drop(std::size_t count) noexcept;
    void prepend(std::u16string_view text);
    void clear() noexcept;

    template <typename Map>
    void transform(Map map) {
        for (char16_t& unit : stale_) unit = map(unit);
    }

private:
    std::u16string stale_;
    std::size_t blanks_ = 0;
};

}  // namespace velmor
