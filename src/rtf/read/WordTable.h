#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace velmor {

// The properties of a control word that stages ask for. A word may have several.
enum class WordTrait : std::uint8_t {
    shown,          // the word puts something on the page: a character, or a break other than a paragraph's end
    shownCell,      // the word belongs to a row, and a row shows something
    shownGroup,     // the group that begins with it shows something at its place
    hiddenGroup,    // the group that begins with it shows nothing at its place
    anchoredGroup,  // the group that begins with it belongs to its place, although a page may show nothing there
    numberGroup,    // the group that begins with it is the number that a list gives its paragraph
    apartGroup,     // the paragraphs of the group that begins with it are not those of the table around it
    documentWord,   // the word describes a whole document, and has no meaning in a part of another one
    documentGroup,  // so does the group that begins with it
    section,        // the word describes a section: its page, columns, numbers, borders, where it begins
    paragraph,      // the word sets up a paragraph; not its list, and not its characters
    endsParagraph,  // the word ends a paragraph, a cell, a row or a section
    row,            // the word belongs to the definition of a row
    font,           // its number is a font's
    moreFont,       // so it is; exact cleaning does not renumber it
    colour,         // its number is a colour's
    moreColour,     // so it is; exact cleaning does not renumber it
    themeColour,    // the word says which colour of the document's theme an entry of the colour table is
    listPart,       // the group that begins with it is a list, an override, or a level of one
    beginsText,     // the word ends the header of a document
    edge,           // the word names an edge of a paragraph that gets a border
    borderLine,     // the word describes the line of a border, or its distance
    sectionPage,    // the word gives a section its page
    columns,        // the word gives a section its columns
    sectionStart,   // the word says how a section begins; in one that continues another it must be absent
    sectionBreak,   // the word says on which page or in which column a section begins
    generatorRest,  // every word that begins so is removed after the system's generator group
};

// The words that stages tell apart by name.
enum class Word : std::uint8_t {
    other,
    bin,
    cell,
    cellx,
    cs,
    ds,
    f,
    facingp,
    intbl,
    itap,
    korvane,
    lastrow,
    ls,
    nestcell,
    nestrow,
    nesttableprops,
    nonesttables,
    page,
    par,
    pard,
    plain,
    row,
    s,
    sect,
    sectd,
    trkeep,
    trowd,
    ts,
    u,
    uc,
    yts,
    // Headers, footers and page borders of a section, in the order in which stages write them.
    headery,
    footery,
    titlepg,
    pgbrdrt,
    pgbrdrb,
    pgbrdrl,
    pgbrdrr,
    pgbrdropt,
    pgbrdrsnap,
    pgbrdrhead,
    pgbrdrfoot,
};

enum class StyleKind : std::uint8_t { paragraph, character, section, table };

// The kind of style that the word numbers.
std::optional<StyleKind> styleKindOf(Word word) noexcept;

// The number of a style that means none.
inline constexpr std::int32_t noStyle = 222;

// A word of the table. Any other is Word::other, without traits.
struct WordMeaning {
    Word word = Word::other;
    std::uint32_t traits = 0;

    bool is(WordTrait trait) const noexcept { return (traits >> static_cast<unsigned>(trait) & 1) != 0; }
};

// `letters` are the word's, without backslash and number. Costs a look-up by hash.
WordMeaning meaningOf(std::u16string_view letters) noexcept;

inline bool wordIs(WordTrait trait, std::u16string_view letters) noexcept {
    return meaningOf(letters).is(trait);
}

// Some words of the table, indexed by their first three letters: one access excludes most others.
class WordSet {
public:
    explicit WordSet(std::initializer_list<WordTrait> traits, std::initializer_list<Word> words = {});

    bool holds(WordMeaning word) const noexcept {
        return (word.traits & traits_) != 0 || (words_ >> static_cast<unsigned>(word.word) & 1) != 0;
    }
    // False only when the word whose backslash is at the index does not belong to the set.
    bool mayHold(std::u16string_view text, std::size_t backslash) const noexcept {
        return text.size() - backslash <= unitsOfKey || beginnings_[keyOf(text.data() + backslash + 1)];
    }

private:
    static constexpr std::size_t unitsOfKey = 3;

    static std::size_t keyOf(const char16_t* letters) noexcept {
        return (letters[0] & 31u) << 10 | (letters[1] & 31u) << 5 | (letters[2] & 31u);
    }

    void add(std::u16string_view beginning);

    std::uint32_t traits_ = 0;
    std::uint64_t words_ = 0;
    std::bitset<std::size_t{1} << 15> beginnings_;
};

// Whether a page shows the control symbol (the unit after its backslash): an escaped character, a byte
// ("\'e4"), a non-breaking space or hyphen.
constexpr bool isShownSymbol(char16_t symbol) noexcept {
    return std::u16string_view(u"'~_{}\\").find(symbol) != std::u16string_view::npos;
}

}  // namespace velmor
