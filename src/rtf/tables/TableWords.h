#pragma once

#include <vector>

#include "rtf/read/RtfReader.h"
#include "rtf/read/TableLevel.h"

namespace velmor::tables {

// The words that end, set up or number the paragraphs of tables, and the groups with separate paragraphs.
inline const WordSet levelWords({WordTrait::apartGroup},
                                {Word::cell, Word::intbl, Word::itap, Word::nestcell, Word::nestrow, Word::par,
                                 Word::pard, Word::row, Word::sect, Word::trowd});

// The first word of the group that begins with the brace, "\*" aside, if its paragraphs are separate from those around
// it: footnotes, headers, footers, text boxes, and groups that only readers without nested tables read. Otherwise 0.
inline std::size_t firstWordOfApartGroup(std::u16string_view text, std::size_t brace) noexcept {
    const std::size_t word = brace + (standsAt(text, brace + 1, u"\\*") ? 3 : 1);
    return standsAt(text, word, u"\\") && wordIs(WordTrait::apartGroup, readWord(text, word).letters) ? word : 0;
}

// Whether a row begins at the index with "\trowd", white space or none, and "\irow0".
inline bool firstRowStandsAt(std::u16string_view text, std::size_t index) noexcept {
    return standsAt(text, index, u"\\trowd") && standsAt(text, skipWhiteSpace(text, index + 6), u"\\irow0");
}

// Whether the "\trowd" at the index follows "\nesttableprops", with white space or none between.
inline bool isNestedDefinition(std::u16string_view text, std::size_t index) noexcept {
    constexpr std::u16string_view properties = u"\\nesttableprops";
    while (index > 0 && isWhiteSpace(text[index - 1])) --index;
    if (index < properties.size()) return false;
    index -= properties.size();
    return standsAt(text, index, properties) && !isEscaped(text, index);
}

// A paragraph of a level continues the runs of paragraphs up to its level and ends the deeper ones. Each run is
// deeper than the one before, and includes the paragraphs of deeper runs. Returns the begin of what the paragraph
// adds to the last run: that of the runs that it ended, or its own.
template <typename Run, typename Ended>
std::size_t continueRuns(std::vector<Run>& runs, Level level, std::size_t paragraph, Ended ended) {
    for (; !runs.empty() && runs.back().level > level; runs.pop_back()) {
        paragraph = runs.back().begin;
        ended(runs.back());
    }
    if (runs.empty() || runs.back().level < level) runs.push_back({level, paragraph});
    return paragraph;
}

}  // namespace velmor::tables
