#pragma once

#include "rtf/read/RtfReader.h"

namespace velmor::tables {

// The words that end, set up or number the paragraphs of tables, and the groups with separate paragraphs.
inline const WordSet levelWords({WordTrait::apartGroup},
                                {Word::bin, Word::cell, Word::intbl, Word::itap, Word::nestcell, Word::nestrow,
                                 Word::par, Word::pard, Word::row, Word::sect, Word::trowd});

// The level of a paragraph with the word \itap.
inline std::uint32_t levelOf(const ControlWord& itap) noexcept {
    if (itap.number.empty()) return 1;
    return itap.number[0] == u'-' ? 0 : static_cast<std::uint32_t>(numberOf(itap.number));
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

}  // namespace velmor::tables
