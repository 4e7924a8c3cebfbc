#pragma once

#include <cstddef>

#include "check/TemplateFile.h"

namespace velmor {

// Walks over the characters of a complete tag, from its opening marker to the end of its closing one. A complete tag
// within it counts as one character. Linear in the tag's own text.
class OwnText {
public:
    OwnText(const TemplateFile& file, std::size_t index)
        : tags_(file.tags()), tag_(tags_[index]), next_(index + 1), at_(tag_.span.open - std::size_t{1}) {}

    // Moves to the next character; false after the last.
    bool next() {
        at_ = inner_ == nullptr ? at_ + 1 : inner_->span.end();
        inner_ = nullptr;
        while (next_ < tag_.next && tags_[next_].span.open < at_) next_ = tags_[next_].next;
        if (next_ < tag_.next && tags_[next_].span.open == at_ && tags_[next_].span.complete()) inner_ = &tags_[next_];
        return at_ < tag_.span.end();
    }
    // In the story's text.
    std::size_t position() const noexcept { return at_; }
    bool isTag() const noexcept { return inner_ != nullptr; }
    // The last position of the character.
    std::size_t last() const noexcept { return inner_ == nullptr ? at_ : inner_->span.end() - 1; }

private:
    const std::vector<TemplateTag>& tags_;
    const TemplateTag& tag_;
    std::size_t next_;  // the first tag within it that has not been passed
    std::size_t at_;
    const TemplateTag* inner_ = nullptr;
};

}  // namespace velmor
