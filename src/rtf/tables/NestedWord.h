#pragma once

#include <string_view>

#include "rtf/read/ControlWord.h"
#include "rtf/read/RtfScanner.h"
#include "rtf/read/WordBeginnings.h"

namespace velmor {

// What the conversion of nested tables tells apart; whole words.
enum class NestedWord {
    other,
    cell,
    nestedCell,
    row,  // or \nestrow
    definition,
    inTable,
    level,
    paragraphEnd,
    sectionEnd,
    paragraphDefaults,
    apartText,  // begins a group whose paragraphs are not those of the table around it
    binary
};

namespace nestedWords {

inline constexpr WordBeginnings beginnings{{u"ann", u"bin", u"cel", u"dpt", u"foo", u"hea", u"int", u"ita", u"nes",
                                            u"non", u"par", u"row", u"sec", u"shp", u"tro"}};

// False for most of the words that are none of ours.
inline bool mayMatter(std::u16string_view text, std::size_t backslash) noexcept {
    return beginnings.hold(text, backslash);
}

inline NestedWord classify(std::u16string_view letters) noexcept {
    struct Entry {
        std::u16string_view letters;
        NestedWord word;
    };
    static constexpr Entry entries[] = {
        {u"cell", NestedWord::cell},
        {u"par", NestedWord::paragraphEnd},
        {u"pard", NestedWord::paragraphDefaults},
        {u"intbl", NestedWord::inTable},
        {u"row", NestedWord::row},
        {u"trowd", NestedWord::definition},
        {u"itap", NestedWord::level},
        {u"nestcell", NestedWord::nestedCell},
        {u"nestrow", NestedWord::row},
        {u"bin", NestedWord::binary},
        {u"sect", NestedWord::sectionEnd},
        {u"annotation", NestedWord::apartText},
        {u"dptxbxtext", NestedWord::apartText},
        {u"footer", NestedWord::apartText},
        {u"footerf", NestedWord::apartText},
        {u"footerl", NestedWord::apartText},
        {u"footerr", NestedWord::apartText},
        {u"footnote", NestedWord::apartText},
        {u"header", NestedWord::apartText},
        {u"headerf", NestedWord::apartText},
        {u"headerl", NestedWord::apartText},
        {u"headerr", NestedWord::apartText},
        {u"nonesttables", NestedWord::apartText},
        {u"shprslt", NestedWord::apartText},
        {u"shptxt", NestedWord::apartText},
    };
    for (const Entry& entry : entries) {
        if (entry.letters == letters) return entry.word;
    }
    return NestedWord::other;
}

// Of a word without a sign.
inline std::size_t numberOf(std::u16string_view digits) noexcept {
    constexpr std::size_t highest = 100'000'000;
    std::size_t number = 0;
    for (const char16_t digit : digits) {
        if (isDecimalDigit(digit)) number = number * 10 + (digit - u'0');
        if (number > highest) return highest;
    }
    return number;
}

}  // namespace nestedWords
}  // namespace velmor
