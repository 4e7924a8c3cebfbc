#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {

// Numbers by name, without regard to case.
using NameIndex = std::unordered_map<std::u16string, std::int32_t, HashIgnoringCase, EqualIgnoringCase>;

// Maps a document's numbers, as they are written ("7" is not "07"), to those of the merged document. Looking up
// a number of up to five digits costs one array access.
class NumberMap {
public:
    static constexpr std::int32_t none = -1;

    // The cost depends on the numbers that were set, not on their span.
    void clear() noexcept {
        for (const std::uint32_t index : set_) short_[index] = none;
        set_.clear();
        long_.clear();
    }

    // The first value for a number counts. Not below 0.
    void set(std::u16string_view number, std::int32_t value) {
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

    std::int32_t find(std::u16string_view number) const {
        const std::size_t index = shortIndex(number);
        if (index != notShort) return index < short_.size() ? short_[index] : none;
        if (long_.empty()) return none;
        const auto found = long_.find(std::u16string(number));
        return found == long_.end() ? none : found->second;
    }

private:
    static constexpr std::size_t notShort = static_cast<std::size_t>(-1);

    static std::size_t shortIndex(std::u16string_view number) noexcept {
        if (number.empty() || number.size() > 5 || (number[0] == u'0' && number.size() > 1)) return notShort;
        std::size_t index = 0;
        for (const char16_t digit : number) {
            if (digit < u'0' || digit > u'9') return notShort;
            index = index * 10 + (digit - u'0');
        }
        return index;
    }

    std::vector<std::int32_t> short_;
    std::vector<std::uint32_t> set_;  // the indices of short_ with a value
    std::unordered_map<std::u16string, std::int32_t> long_;
};

// Numbers in decimal digits. The views hold as long as this object.
class NumberTexts {
public:
    std::u16string_view of(std::int32_t number) {
        const auto index = static_cast<std::size_t>(number);
        if (index >= shortNumbers) return long_.try_emplace(number, decimal(number)).first->second;
        while (texts_.size() <= index) texts_.push_back(decimal(texts_.size()));
        return texts_[index];
    }

private:
    static constexpr std::size_t shortNumbers = 100000;

    std::deque<std::u16string> texts_;
    std::unordered_map<std::int32_t, std::u16string> long_;
};

}  // namespace velmor
