#pragma once

#include <cstddef>
#include <string_view>

#include "text/Escape.h"

namespace velmor {

constexpr bool isLetter(char16_t unit) noexcept {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

constexpr bool isWhiteSpace(char16_t unit) noexcept {
    return unit == u' ' || unit == u'\r' || unit == u'\n' || unit == u'\t';
}

inline bool standsAt(std::u16string_view text, std::size_t index, std::u16string_view word) noexcept {
    return index <= text.size() && text.substr(index, word.size()) == word;
}

// True for the word itself; false where it is the beginning of a longer word.
inline bool wordStandsAt(std::u16string_view text, std::size_t index, std::u16string_view word) noexcept {
    const std::size_t end = index + word.size();
    return standsAt(text, index, word) && (end >= text.size() || !isLetter(text[end]));
}

inline std::size_t skipWhiteSpace(std::u16string_view text, std::size_t index) noexcept {
    while (index < text.size() && isWhiteSpace(text[index])) ++index;
    return index;
}

// Walks the unescaped control words and braces of a text from left to right, one pass whatever the
// text. Indices are 0-based.
class RtfScanner {
public:
    // What begins at or behind `from` (which may lie behind a run of backslashes) and in front of `limit`.
    RtfScanner(std::u16string_view text, std::size_t from, std::size_t limit) noexcept
        : text_(text), at_(from), limit_(limit < text.size() ? limit : text.size()) {
        if (from < limit_ && isEscaped(text, from)) ++at_;
    }

    // Moves to the next "{", "}" or backslash of a control word; false when none is left.
    bool next() noexcept {
        while (at_ < limit_) {
            const char16_t unit = text_[at_];
            if (unit == u'{' || unit == u'}') {
                position_ = at_++;
                return true;
            }
            if (unit != u'\\') {
                ++at_;
            } else if (takeBackslash()) {
                return true;
            }
        }
        return false;
    }

    // As next, but passes over braces.
    bool nextWord() noexcept {
        while (at_ < limit_) {
            if (text_[at_] != u'\\') {
                ++at_;
            } else if (takeBackslash()) {
                return true;
            }
        }
        return false;
    }

    // Leaves out what precedes the index: the data of \bin, say.
    void goOnAt(std::size_t index) noexcept { at_ = index; }

    std::u16string_view text() const noexcept { return text_; }
    std::size_t position() const noexcept { return position_; }

private:
    bool takeBackslash() noexcept {
        position_ = at_;
        at_ += 2;
        return position_ + 1 < text_.size() && isLetter(text_[position_ + 1]);
    }

    std::u16string_view text_;
    std::size_t at_;
    std::size_t limit_;
    std::size_t position_ = 0;
};

}  // namespace velmor
