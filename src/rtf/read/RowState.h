#pragma once

#include <cstddef>

#include "rtf/read/RtfReader.h"

namespace velmor {

// Whether the current paragraph is in a table row: a row's definition is open, or the paragraph has \intbl. It
// gets every word and brace of a text, in order.
class RowState {
public:
    void take(const RtfReader& reader, std::size_t depth) noexcept {
        if (reader.closes()) {
            if (inTable_ != nowhere && inTable_ > depth) inTable_ = nowhere;
        } else if (reader.isWord(u"\\trowd")) {
            defined_ = true;
        } else if (reader.isWord(u"\\intbl")) {
            inTable_ = depth;
        } else if (reader.isWord(u"\\pard")) {
            inTable_ = nowhere;
        } else if (reader.isWord(u"\\row")) {
            defined_ = false;
            inTable_ = nowhere;
        }
    }

    bool inRow() const noexcept { return defined_ || inTable_ != nowhere; }

private:
    bool defined_ = false;
    std::size_t inTable_ = nowhere;  // the depth of the \intbl
};

}  // namespace velmor
