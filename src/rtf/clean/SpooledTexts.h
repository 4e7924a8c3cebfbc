#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "rtf/clean/Spool.h"

namespace velmor {

// Texts in a spool, in the order of adding. Text of one byte a character takes one byte.
class SpooledTexts {
public:
    explicit SpooledTexts(Spool& spool) noexcept : spool_(spool) {}

    void add(std::u16string_view text);

    // Reading begins with the first text.
    void rewind();
    // False when none is left.
    bool next(std::u16string& text);

private:
    Spool& spool_;
    std::size_t count_ = 0;
    std::size_t read_ = 0;
    std::string bytes_;
};

}  // namespace velmor
