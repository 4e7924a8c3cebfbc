#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>

namespace velmor {

// A few words of RTF, known by their first three letters. Most words are none of them, and a single
// look at a table says so, without a branch that depends on the word.
class WordBeginnings {
public:
    consteval explicit WordBeginnings(std::initializer_list<std::u16string_view> beginnings) {
        while (!place(beginnings)) multiplier_ += 2;
    }

    // Of the word whose backslash stands at the index; false for one of less than three letters.
    bool hold(std::u16string_view text, std::size_t backslash) const noexcept {
        if (text.size() - backslash < unitsOfKey) return false;
        std::uint64_t key;
        std::memcpy(&key, text.data() + backslash, sizeof key);
        return keys_[slotOf(key)] == key;
    }

private:
    static constexpr std::size_t unitsOfKey = 4;
    static constexpr int slotBits = 6;

    constexpr std::size_t slotOf(std::uint64_t key) const noexcept { return key * multiplier_ >> (64 - slotBits); }

    consteval bool place(std::initializer_list<std::u16string_view> beginnings) {
        keys_ = {};
        for (const std::u16string_view letters : beginnings) {
            const std::array<char16_t, unitsOfKey> units{u'\\', letters[0], letters[1], letters[2]};
            const auto key = std::bit_cast<std::uint64_t>(units);
            std::uint64_t& slot = keys_[slotOf(key)];
            if (slot != 0 && slot != key) return false;
            slot = key;
        }
        return true;
    }

    std::array<std::uint64_t, std::size_t{1} << slotBits> keys_{};
    std::uint64_t multiplier_ = 0x9E3779B97F4A7C15;
};

}  // namespace velmor
