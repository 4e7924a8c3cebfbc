#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "check/RtfCheck.h"
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

    // "page text", "header"; empty in plain text.
    const std::u16string& name() const noexcept { return name_; }
    // Those that end within the text; what follows the last belongs to one more. A plain text has none.
    const std::vector<Paragraph>& paragraphs() const noexcept { return paragraphs_; }
    // Line ends within it are ends of paragraphs, lines and cells.
    const std::u16string& text() const noexcept { return text_; }
    // The range of the source that became the unit. Costs the logarithm of the number of formatting changes, and less
    // near the unit that was asked for last.
    TextRange source(std::size_t index) const noexcept;
    // From the first to the last of [begin, end), which must not be empty.
    TextRange source(std::size_t begin, std::size_t end) const noexcept {
        return {source(begin).begin, source(end - 1).end};
    }
    // The first unit whose source ends after the 0-based index of the source; the text's size when there is none.
    std::size_t unitAt(std::size_t source) const noexcept;
    // "page text, paragraph 4", "header, table 1, row 2, cell 3"; empty in plain text.
    std::u16string placeOf(std::size_t index) const;

    // A unit, or text that is written in the source as it is shown.
    void add(std::u16string_view text, TextRange source);
    // The source of the last unit, which took more than one unit of it, goes on up to `end`.
    void extend(std::size_t end) noexcept { runs_.back().end = static_cast<std::uint32_t>(end); }
    void endParagraph(bool inTable);
    void endCell();
    void endRow();

private:
    // Units that follow each other in the source, each written with one unit, or a single unit.
    struct Run {
        std::uint32_t at;  // in the text
        std::uint32_t begin;
        std::uint32_t end;
    };

    bool runHolds(std::size_t run, std::size_t index) const noexcept;

    std::u16string name_;
    std::u16string text_;
    std::vector<Run> runs_;
    mutable std::size_t lastRun_ = 0;  // that was asked for
    std::vector<Paragraph> paragraphs_;
    Paragraph next_{0, 1, 0, 1, 1};
    std::uint32_t tables_ = 0;
};

// A template as its reader finds it, in one pass.
struct VisibleText {
    // In the order of their beginnings; a plain text is one story. Those of groups that a page does not show are left
    // out unless the source has a "<" in them.
    std::vector<Story> stories;
    std::vector<RtfFault> faults;  // in the order in which they were found
};
VisibleText readVisibleText(std::u16string_view source);

}  // namespace velmor
