#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtf/clean/Spool.h"

namespace velmor {

// Texts in a spool, in the order of adding. Text of one byte a character takes one byte.
class SpooledTexts {
public:
    explicit SpooledTexts(Spool& spool) noexcept : spool_(spool) {}

    void add(std::u16string_view text) {
        char16_t used = 0;
        for (const char16_t unit : text) used = static_cast<char16_t>(used | unit);
        const Head head{text.size(), used > 0xFF};
        spool_.append({reinterpret_cast<const char*>(&head), sizeof head});
        if (head.isWide != 0) {
            spool_.append({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
        } else {
            bytes_.resize(text.size());
            std::transform(text.begin(), text.end(), bytes_.begin(),
                           [](char16_t unit) { return static_cast<char>(unit); });
            spool_.append(bytes_);
        }
        ++count_;
    }

    // Reading begins with the first text.
    void rewind() {
        spool_.rewind();
        read_ = 0;
    }

    // False when none is left.
    bool next(std::u16string& text) {
        if (read_ == count_) return false;
        ++read_;
        Head head{};
        spool_.read(reinterpret_cast<char*>(&head), sizeof head);
        text.resize(head.length);
        if (head.isWide != 0) {
            spool_.read(reinterpret_cast<char*>(text.data()), text.size() * sizeof(char16_t));
        } else {
            bytes_.resize(text.size());
            spool_.read(bytes_.data(), bytes_.size());
            std::transform(bytes_.begin(), bytes_.end(), text.begin(),
                           [](char byte) { return static_cast<unsigned char>(byte); });
        }
        return true;
    }

private:
    struct Head {
        std::uint64_t length;  // in units
        std::uint64_t isWide;  // two bytes a unit
    };

    Spool& spool_;
    std::size_t count_ = 0;
    std::size_t read_ = 0;
    std::string bytes_;
};

}  // namespace velmor
