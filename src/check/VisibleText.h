#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"

namespace velmor {

// A part of a template that is read from start to end by itself: the page text, a header, a footnote, a group that a
// page does not show. It holds the text as a reader of RTF shows it, with the place in the source of each character.
class Story {
public:
    // Where a paragraph or a cell ends, and what it is called.
    struct Paragraph {
        std::size_t end;  // in the text
        std::uint32_t number = 0;
        std::uint32_t table = 0;  // 0 outside tables
        std::uint32_t row = 0;
        std::uint32_t cell = 0;
    };

    explicit Story(std::u16string_view name) : name_(name) {}

    // Line ends within it are ends of paragraphs, lines and cells.
    const std::u16string& text() const noexcept { return text_; }
    // The range of the source that became the unit.
    TextRange source(std::size_t index) const noexcept { return {begins_[index], ends_[index]}; }
    // From the first to the last of [begin, end), which must not be empty.
    TextRange source(std::size_t begin, std::size_t end) const noexcept { return {begins_[begin], ends_[end - 1]}; }
    // "page text, paragraph 4", "header, table 1, row 2, cell 3"; empty in plain text.
    std::u16string placeOf(std::size_t index) const;

    void add(char16_t unit, TextRange source);
    // The last unit's source goes on up to `end`.
    void extend(std::size_t end) noexcept { ends_.back() = static_cast<std::uint32_t>(end); }
    void endParagraph(bool inTable);
    void endCell();
    void endRow();

private:
    std::u16string name_;
    std::u16string text_;
    std::vector<std::uint32_t> begins_;
    std::vector<std::uint32_t> ends_;
    std::vector<Paragraph> paragraphs_;
    Paragraph next_{0, 1, 0, 1, 1};
    std::uint32_t tables_ = 0;
};

// The stories of a template in the order of their beginnings; a plain text is one story. Stories of groups that a page
// does not show are left out unless the source has a "<" in them. Linear in the source.
std::vector<Story> readStories(std::u16string_view source);

}  // namespace velmor
