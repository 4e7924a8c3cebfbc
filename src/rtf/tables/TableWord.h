#pragma once

#include "rtf/read/RtfScanner.h"
#include "rtf/read/WordBeginnings.h"

namespace velmor {

// What the table stages tell apart. `cell`, `row`, `lastRow` and `definition` ("\trowd") stand for
// every word that begins so, "\cellx" excepted; the others are whole words.
enum class TableWord {
    other,
    openBrace,
    closeBrace,
    cell,
    row,
    lastRow,
    definition,
    level,
    paragraphEnd,
    paragraphDefaults,
    nestedCell,
    nestedRowProperties,
    noNestedTables,
    marker
};

namespace tables {

inline constexpr std::u16string_view nestedRowProperties = u"\\nesttableprops";
inline constexpr std::u16string_view markerOpening = u"{\\*\\korvane";

// Whether a row begins at the index with "\trowd", white space or none, and "\irow0".
inline bool firstRowStandsAt(std::u16string_view text, std::size_t index) noexcept {
    return standsAt(text, index, u"\\trowd") && standsAt(text, skipWhiteSpace(text, index + 6), u"\\irow0");
}

// Whether the "\trowd" at the index stands behind "\nesttableprops", with white space or none between.
inline bool isNestedDefinition(std::u16string_view text, std::size_t index) noexcept {
    while (index > 0 && isWhiteSpace(text[index - 1])) --index;
    if (index < nestedRowProperties.size()) return false;
    index -= nestedRowProperties.size();
    return standsAt(text, index, nestedRowProperties) && !isEscaped(text, index);
}

inline TableWord classifyP(std::u16string_view text, std::size_t index) noexcept {
    if (!standsAt(text, index, u"\\par")) return TableWord::other;
    const std::size_t next = index + 4;
    if (next >= text.size() || !isLetter(text[next])) return TableWord::paragraphEnd;
    return wordStandsAt(text, index, u"\\pard") ? TableWord::paragraphDefaults : TableWord::other;
}

inline TableWord classifyN(std::u16string_view text, std::size_t index) noexcept {
    if (wordStandsAt(text, index, u"\\nestcell")) return TableWord::nestedCell;
    if (wordStandsAt(text, index, nestedRowProperties)) return TableWord::nestedRowProperties;
    if (wordStandsAt(text, index, u"\\nonesttables")) return TableWord::noNestedTables;
    return TableWord::other;
}

inline constexpr WordBeginnings beginnings{{u"cel", u"ita", u"kor", u"las", u"nes", u"non", u"par", u"row", u"tro"}};

// False for most of the words that are none of ours; true for braces.
inline bool mayMatter(std::u16string_view text, std::size_t index) noexcept {
    return text[index] != u'\\' || beginnings.hold(text, index);
}

inline TableWord classify(std::u16string_view text, std::size_t index) noexcept {
    if (text[index] != u'\\') return text[index] == u'{' ? TableWord::openBrace : TableWord::closeBrace;
    const auto when = [&](bool stands, TableWord word) { return stands ? word : TableWord::other; };
    switch (text[index + 1]) {
        case u'c':
            return when(standsAt(text, index, u"\\cell") && !standsAt(text, index + 5, u"x"), TableWord::cell);
        case u'i':
            return when(wordStandsAt(text, index, u"\\itap"), TableWord::level);
        case u'k':
            return when(index >= 3 && standsAt(text, index - 3, markerOpening), TableWord::marker);
        case u'l':
            return when(standsAt(text, index, u"\\lastrow"), TableWord::lastRow);
        case u'n':
            return classifyN(text, index);
        case u'p':
            return classifyP(text, index);
        case u'r':
            return when(standsAt(text, index, u"\\row"), TableWord::row);
        case u't':
            return when(standsAt(text, index, u"\\trowd"), TableWord::definition);
        default:
            return TableWord::other;
    }
}

// Moves to the next word that matters; braces are passed over unless they are asked for. `other`
// when none is left.
inline TableWord next(RtfScanner& scanner, bool braces) noexcept {
    while (braces ? scanner.next() : scanner.nextWord()) {
        if (!mayMatter(scanner.text(), scanner.position())) continue;
        const TableWord word = classify(scanner.text(), scanner.position());
        if (word != TableWord::other) return word;
    }
    return TableWord::other;
}

}  // namespace tables
}  // namespace velmor
