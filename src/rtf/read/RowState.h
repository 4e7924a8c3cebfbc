#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Whether the paragraph that is read lies in a table row: a row's definition is open, or the paragraph
// says so. Told every word and every closing brace of a text, in order.
class RowState {
public:
    void word(std::u16string_view text, std::size_t index, std::size_t depth) noexcept {
        if (wordStandsAt(text, index, u"\\trowd")) {
            defined_ = true;
        } else if (wordStandsAt(text, index, u"\\intbl")) {
            inTable_ = depth;
        } else if (wordStandsAt(text, index, u"\\pard")) {
            inTable_ = nowhere;
        } else if (wordStandsAt(text, index, u"\\row")) {
            defined_ = false;
            inTable_ = nowhere;
        }
    }
    void close(std::size_t depth) noexcept {
        if (inTable_ != nowhere && inTable_ > depth) inTable_ = nowhere;
    }

    bool inRow() const noexcept { return defined_ || inTable_ != nowhere; }

private:
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    bool defined_ = false;
    std::size_t inTable_ = nowhere;  // the depth at which the paragraph says so
};

}  // namespace velmor
