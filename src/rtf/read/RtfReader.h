#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/read/WordTable.h"
#include "text/Characters.h"
#include "text/Compare.h"
#include "text/Escape.h"

namespace velmor {

// The syntax of RTF. All indices are 0-based.
//
// Two manners of reading differ in what precedes a brace and in \bin. The exact one counts a brace unless a
// backslash directly precedes it, so one after "\\" does not count, the brace of a document excepted. The tolerant one
// reads backslashes in pairs, as readers of RTF do, and passes over the data of \bin.

inline constexpr std::size_t nowhere = std::u16string_view::npos;

// A range of a text; the end is excluded.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::u16string_view of(std::u16string_view text) const { return text.substr(begin, end - begin); }
};

inline bool standsAt(std::u16string_view text, std::size_t index, std::u16string_view word) noexcept {
    return index <= text.size() && text.substr(index, word.size()) == word;
}

// True for the word itself; false for the beginning of a longer word.
inline bool wordStandsAt(std::u16string_view text, std::size_t index, std::u16string_view word) noexcept {
    const std::size_t end = index + word.size();
    return standsAt(text, index, word) && (end >= text.size() || !isLetter(text[end]));
}

inline std::size_t skipWhiteSpace(std::u16string_view text, std::size_t index) noexcept {
    while (index < text.size() && isWhiteSpace(text[index])) ++index;
    return index;
}

// Past the index, or past the blank at the index, which ends a word.
inline std::size_t skipBlank(std::u16string_view text, std::size_t index) noexcept {
    return index + (index < text.size() && text[index] == u' ');
}

// Past closing braces and line breaks.
std::size_t skipClosingBraces(std::u16string_view text, std::size_t index) noexcept;

// An optional "-" and decimal digits within 32 bits; nothing for any other text.
std::optional<std::int32_t> wholeNumber(std::u16string_view text) noexcept;

// The number of a word, with or without a preceding "-"; one beyond 9 digits is cut short, an absent one is 0.
std::int32_t numberOf(std::u16string_view digits) noexcept;

template <std::integral Number>
std::u16string decimal(Number number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// ---- Words

// A control word in a text.
struct ControlWord {
    std::size_t begin = 0;        // of its backslash
    std::u16string_view letters;  // after the backslash; none for a symbol
    std::u16string_view number;   // digits, with or without a preceding "-"; may be empty
    std::size_t end = 0;          // after the number; a blank that ends the word is not part of it

    std::size_t numberBegin() const noexcept { return end - number.size(); }
};

// The word whose unescaped backslash is at the index.
inline ControlWord readWord(std::u16string_view text, std::size_t index) noexcept {
    std::size_t at = index + 1;
    while (at < text.size() && isLetter(text[at])) ++at;
    const std::size_t letters = at;
    if (at + 1 < text.size() && text[at] == u'-' && isDigit(text[at + 1])) ++at;
    while (at < text.size() && isDigit(text[at])) ++at;
    return {index, text.substr(index + 1, letters - index - 1), text.substr(letters, at - letters), at};
}

// Past the word and the blank that ends it, if there is one.
inline std::size_t endWithBlank(std::u16string_view text, const ControlWord& word) noexcept {
    return skipBlank(text, word.end);
}

// Past the data of the \bin word at the index, if it is one; else past the backslash and what it escapes.
std::size_t skipBinary(std::u16string_view text, std::size_t index) noexcept;
inline std::size_t skipEscape(std::u16string_view text, std::size_t index) noexcept {
    return index + 1 < text.size() && text[index + 1] == u'b' ? skipBinary(text, index) : index + 2;
}

// A run of control words, white space or none between them: what sets up a paragraph, or a document's header.
class WordRun {
public:
    WordRun(std::u16string_view text, std::size_t from) noexcept : text_(text), at_(from) {}

    // Moves to the next word; false when something else follows.
    bool next() noexcept {
        at_ = skipWhiteSpace(text_, at_);
        if (at_ >= text_.size() || text_[at_] != u'\\') return false;
        word_ = readWord(text_, at_);
        if (word_.letters.empty()) return false;
        at_ = word_.end;
        return true;
    }

    const ControlWord& word() const noexcept { return word_; }
    // After the last word; where something else follows, at that.
    std::size_t end() const noexcept { return at_; }

private:
    std::u16string_view text_;
    std::size_t at_;
    ControlWord word_;
};

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

// ---- Groups

// True where a document begins: "{\rtf", in any letter case, whose brace is not escaped.
inline bool documentStandsAt(std::u16string_view text, std::size_t index) noexcept {
    const auto unitIs = [&](std::size_t offset, char16_t letter) { return (text[index + offset] | 0x20) == letter; };
    return text.size() - index >= 5 && text[index] == u'{' && text[index + 1] == u'\\' && unitIs(2, u'r') &&
           unitIs(3, u't') && unitIs(4, u'f') && !isEscaped(text, index);
}

// What a group begins with, white space passed over.
struct GroupOpening {
    std::size_t word = 0;         // of the first word's backslash; the place for it
    bool ignorable = false;       // "\*" precedes the word
    std::u16string_view letters;  // none when the group does not begin with a word
};
GroupOpening readOpening(std::u16string_view text, std::size_t brace) noexcept;

// The first brace of either kind at or after the index; the text's size when there is none.
std::size_t findBrace(std::u16string_view text, std::size_t index) noexcept;

inline constexpr std::size_t noGroupEnd = std::u16string_view::npos;

// The brace that closes the group in which `from` lies; noGroupEnd when none does.
std::size_t findGroupEnd(std::u16string_view text, std::size_t from, bool tolerant) noexcept;

// The pull reader: walks braces and control words from left to right, in one pass whatever the text.
class RtfReader {
public:
    // What begins at or after `from` (which may follow a run of backslashes) and before `limit`.
    RtfReader(std::u16string_view text, std::size_t from, std::size_t limit, bool tolerant = false) noexcept
        : text_(text), at_(from), limit_(limit < text.size() ? limit : text.size()), tolerant_(tolerant) {
        if (from < limit_ && isEscaped(text, from)) ++at_;
    }

    // Each moves to the next of its kind, and is false when none is left.

    // A brace, or the backslash of a control word.
    bool next() noexcept {
        while (at_ < limit_) {
            const char16_t unit = text_[at_];
            if (unit == u'{' || unit == u'}') return takeBrace();
            if (unit != u'\\') {
                ++at_;
            } else if (takeBackslash()) {
                return true;
            }
        }
        return false;
    }
    // A control word; braces are passed over.
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
    // A brace that counts in the manner of reading.
    bool nextBrace() noexcept {
        while (nextAnyBrace()) {
            if (counts_) return true;
        }
        return false;
    }
    // As nextBrace; exact reading stops at the braces that do not count, too.
    bool nextAnyBrace() noexcept { return tolerant_ ? nextUnescapedBrace() : nextPlainBrace(); }

    // Leaves out what precedes the index.
    void goOnAt(std::size_t index) noexcept { at_ = index; }
    // Reads what begins before another limit.
    void limitTo(std::size_t limit) noexcept { limit_ = limit < text_.size() ? limit : text_.size(); }
    // The index at which reading goes on. It may exceed the limit.
    std::size_t at() const noexcept { return at_; }

    std::u16string_view text() const noexcept { return text_; }
    std::size_t position() const noexcept { return position_; }
    bool opens() const noexcept { return text_[position_] == u'{'; }
    bool closes() const noexcept { return text_[position_] == u'}'; }
    bool counts() const noexcept { return counts_; }
    // The groups that are open after the last brace, of those that began in what was read.
    std::size_t depth() const noexcept { return depth_; }

    // The word at the position.
    ControlWord word() const noexcept { return readWord(text_, position_); }
    bool isWord(std::u16string_view word) const noexcept { return wordStandsAt(text_, position_, word); }

private:
    bool takeBrace() noexcept {
        position_ = at_++;
        if (text_[position_] == u'{') {
            ++depth_;
        } else {
            depth_ -= depth_ > 0;
        }
        return true;
    }

    bool takeBackslash() noexcept {
        position_ = at_;
        at_ = tolerant_ ? skipEscape(text_, at_) : at_ + 2;
        return position_ + 1 < text_.size() && isLetter(text_[position_ + 1]);
    }

    bool nextPlainBrace() noexcept;
    bool nextUnescapedBrace() noexcept;

    std::u16string_view text_;
    std::size_t at_;
    std::size_t limit_;
    bool tolerant_;
    bool counts_ = true;
    std::size_t position_ = 0;
    std::size_t depth_ = 0;
};

// ---- Searching

// Searches a text from left to right for what is not escaped and, tolerant, does not lie in the data of \bin.
class RtfSearch {
public:
    explicit RtfSearch(std::u16string_view text, bool tolerant = false) noexcept : text_(text), tolerant_(tolerant) {}

    // The first `sought` at or after the index; npos when there is none. Indices ascend.
    std::size_t find(std::u16string_view sought, std::size_t from, Comparison comparison = Comparison::binary) noexcept;
    // The same for a whole word.
    std::size_t findWord(std::u16string_view word, std::size_t from = 0) noexcept;

private:
    std::size_t skipData(std::size_t index) noexcept;

    std::u16string_view text_;
    bool tolerant_;
    std::size_t at_ = 0;  // the data before this is known
};

}  // namespace velmor
