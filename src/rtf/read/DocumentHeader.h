#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// The words of a document's header, up to its text. Those of groups, such as its tables, are left out.
class DocumentHeader {
public:
    // `header` follows the document's opening word.
    DocumentHeader(std::u16string_view text, std::size_t header) noexcept : text_(text), at_(header) {}

    bool next() noexcept;
    const ControlWord& word() const noexcept { return word_; }

private:
    std::u16string_view text_;
    std::size_t at_;
    ControlWord word_;
};

}  // namespace velmor
