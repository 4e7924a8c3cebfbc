#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "rtf/read/RtfScanner.h"

namespace velmor {

// True where a document begins: "{\rtf", in any letter case, whose brace is not escaped.
inline bool documentStandsAt(std::u16string_view text, std::size_t index) noexcept {
    const auto unitIs = [&](std::size_t offset, char16_t letter) { return (text[index + offset] | 0x20) == letter; };
    return text.size() - index >= 5 && text[index] == u'{' && text[index + 1] == u'\\' && unitIs(2, u'r') &&
           unitIs(3, u't') && unitIs(4, u'f') && !isEscaped(text, index);
}

// The first brace of either kind at or behind the index; the text's size when there is none. Units are
// looked at in blocks, which compilers compare several at a time.
inline std::size_t findBrace(std::u16string_view text, std::size_t index) noexcept {
    constexpr std::size_t block = 16;
    for (; index + block <= text.size(); index += block) {
        const char16_t* const units = text.data() + index;
        std::uint16_t found = 0;
        for (std::size_t i = 0; i < block; ++i) found |= static_cast<std::uint16_t>((units[i] | 6) == 0x7F);
        if (found != 0) break;
    }
    while (index < text.size() && text[index] != u'{' && text[index] != u'}') ++index;
    return index;
}

// Walks the braces that open and close groups, from left to right. By the plain rule a brace counts
// unless a backslash stands directly in front of it, so one behind "\\" does not, the brace of a
// document excepted. Tolerant walking reads backslashes in pairs, as RTF does, and passes over the
// data of \bin; it starts outside of an escape. Indices are 0-based.
class BraceScanner {
public:
    BraceScanner(std::u16string_view text, std::size_t from, bool tolerant) noexcept
        : text_(text), at_(from), tolerant_(tolerant) {}

    // Moves to the next brace; false when none is left.
    bool next() noexcept { return tolerant_ ? nextUnescaped() : nextPlain(); }

    std::size_t position() const noexcept { return position_; }
    bool opens() const noexcept { return text_[position_] == u'{'; }

private:
    bool nextPlain() noexcept {
        for (; (at_ = findBrace(text_, at_)) < text_.size(); ++at_) {
            if (at_ > 0 && text_[at_ - 1] == u'\\' && !documentStandsAt(text_, at_)) continue;
            position_ = at_++;
            return true;
        }
        return false;
    }

    bool nextUnescaped() noexcept;

    std::u16string_view text_;
    std::size_t at_;
    std::size_t position_ = 0;
    bool tolerant_;
};

// The index behind the data of the \bin word at `index`, or behind the backslash and what it escapes.
std::size_t skipEscape(std::u16string_view text, std::size_t index) noexcept;

// The data of the \bin words of a text, for those who look at single places.
class BinaryData {
public:
    explicit BinaryData(std::u16string_view text) noexcept : text_(text) {}

    // The index behind the data in which `index` lies; `index` itself when it lies in none. To be asked
    // for in ascending order.
    std::size_t behind(std::size_t index) noexcept;

private:
    std::u16string_view text_;
    std::size_t at_ = 0;
};

inline constexpr std::size_t noGroupEnd = std::u16string_view::npos;

// The brace that closes the group inside of which `from` lies; noGroupEnd when none does.
inline std::size_t findGroupEnd(std::u16string_view text, std::size_t from, bool tolerant) noexcept {
    BraceScanner braces(text, from, tolerant);
    for (std::size_t depth = 1; braces.next();) {
        depth += braces.opens() ? 1 : static_cast<std::size_t>(-1);
        if (depth == 0) return braces.position();
    }
    return noGroupEnd;
}

}  // namespace velmor
