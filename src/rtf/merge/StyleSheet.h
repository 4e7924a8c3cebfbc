#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/FreshNumbers.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/TableEntries.h"
#include "rtf/read/WordTable.h"

namespace velmor {

// The formatting of text whose style has another definition in the merged document.
struct DirectLook {
    std::u16string words;     // are written after the style's number
    std::u16string replaced;  // the words of this look go where they follow the number
};

// The number of a style that means none.
inline constexpr std::int32_t noStyle = 222;

enum class StyleKind : std::uint8_t { paragraph, character, section, table };

// The kind of style that the word numbers.
std::optional<StyleKind> styleKindOf(Word word) noexcept;

// The styles of all documents of a run. The host's keep their names and numbers. A style of another
// document that equals one already here is that one; any other gets a number of its own, and, when
// its name is taken, a new name: "heading 1 (2)". On request it is left out instead, and its text gets the style that
// has the name (CleanOptions::styles). docs/cleaning.md has the rules.
class StyleSheet {
public:
    explicit StyleSheet(const CleanOptions& options);

    // The host comes first.
    void beginDocument(bool host);

    // Reads the document's sheet, "{\stylesheet" to its brace, whose references to fonts, colours and lists are
    // those of the merged document already.
    void readSheet(std::u16string sheet);

    // Adds the styles that were read. `font`: what those mean that name none; NumberMap::none leaves them so.
    void addStyles(std::int32_t font);

    // The number of the document's style; NumberMap::none when the reference stays as it is.
    std::int32_t numberOf(StyleKind kind, std::u16string_view number);

    // What a reference to the document's style must write besides the number; null when nothing.
    const DirectLook* directLook(StyleKind kind, std::u16string_view number) const;

    // What paragraphs of the document that name no style have to name now; none when nothing. `whole`: the
    // document defines its own look, so that they must not get the host's style 0.
    std::int32_t defaultStyle(bool whole);

    // The font that the document's style 0 names; NumberMap::none when it does not.
    std::int32_t fontOfNormal() const;

    bool empty() const noexcept { return entries_.empty(); }
    std::u16string text() const { return u"{\\stylesheet" + entries_ + u"}"; }

private:
    static constexpr std::size_t kinds = 4;

    struct Reference {
        std::size_t at = 0;  // the place of its digits
        std::u16string_view digits;
    };

    struct Style {
        std::u16string_view entry;
        StyleKind kind = StyleKind::paragraph;
        Reference number, base, next, link;
        std::size_t nameBegin = 0;
        std::size_t nameEnd = 0;
        std::u16string name;  // without its further names, letter case folded
        std::u16string look;  // the words and groups, without the above
        std::int32_t newNumber = NumberMap::none;
        bool isNew = false;
        std::u16string suffix;
        std::u16string font;     // the word that names the document's default font, where the style needs it
        bool isPlain = false;    // made here for text without a style
        bool isLeftOut = false;  // its text has the other style of its name
        DirectLook direct;

        std::u16string_view ownNumber() const noexcept { return number.digits.empty() ? u"0" : number.digits; }
    };

    // The style that has a name.
    struct Definition {
        std::int32_t number;
        std::u16string look;
    };

    void noteWord(Style& style, const EntryItems& items) const;
    Style read(std::u16string_view entry) const;
    static std::u16string_view nameIn(const Style& style);
    void findNumbers();
    void nameFont(std::int32_t font);
    void settleFromBase(std::size_t index);
    void settle(Style& style);
    std::u16string keyOf(const Style& style) const;
    const Style* styleOf(const Reference& reference, StyleKind preferred) const;
    void claimName(Style& style);
    void define(const Style& style, std::int32_t number);
    const Definition* otherDefinition(const Style& style) const;
    void leaveOut(Style& style, const Definition& other);
    void report(const Style& style);
    std::u16string nameOf(const Reference& reference, StyleKind preferred) const;
    std::u16string ownSpacing(const Style& style) const;
    bool losesWords(const Style& style) const;
    bool gainsSize(const Style& style) const;
    const Style* ownNormal() const;
    void append(const Style& style);
    void addNormalOfHost();
    std::int32_t plainStyle();

    bool tolerant_;
    StyleConflict conflict_;
    MergeReport* report_;
    bool host_ = true;
    bool hasSheet_ = false;
    bool hasNormal_ = false;     // style 0 is there
    std::u16string normalLook_;  // the host's style 0; empty when it changes nothing
    bool changesPlain_ = false;  // the host's style 0, or the one named "Normal", changes something

    std::unordered_map<std::u16string, std::int32_t> numbersByKey_;
    NameIndex lastOfName_;                                        // the highest suffix given to a name; 1 without one
    std::unordered_map<std::u16string, Definition> definitions_;  // by name and kind, unless styles are renamed
    FreshNumbers fresh_;
    std::u16string entries_;

    // Of the current document.
    std::int32_t defaultStyle_ = NumberMap::none;  // which it does not define itself
    std::u16string sheet_;
    std::vector<Style> styles_;            // parts of the sheet
    std::array<NumberMap, kinds> places_;  // in styles_
};

}  // namespace velmor
