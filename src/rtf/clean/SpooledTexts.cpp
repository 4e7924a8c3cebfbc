#include "rtf/clean/SpooledTexts.h"

#include <algorithm>
#include <cstdint>

namespace velmor {
namespace {

struct Head {
    std::uint64_t length;  // in units
    std::uint64_t isWide;  // two bytes a unit
};

}  // namespace

void SpooledTexts::add(std::u16string_view text) {
    char16_t used = 0;
    for (const char16_t unit : text) used = static_cast<char16_t>(used | unit);
    const Head head{text.size(), used > 0xFF};
    spool_.append({reinterpret_cast<const char*>(&head), sizeof head});
    if (head.isWide != 0) {
        spool_.append({reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)});
    } else {
        bytes_.resize(text.size());
        std::transform(text.begin(), text.end(), bytes_.begin(), [](char16_t unit) { return static_cast<char>(unit); });
        spool_.append(bytes_);
    }
    ++count_;
}

void SpooledTexts::rewind() {
    spool_.rewind();
    read_ = 0;
}

bool SpooledTexts::next(std::u16string& text) {
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

}  // namespace velmor
