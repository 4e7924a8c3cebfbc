#include "rtf/merge/DirectFormatting.h"

#include <algorithm>
#include <array>

namespace velmor {
namespace {

// Words of a style's entry that mean nothing in text.
constexpr std::u16string_view styleWords[] = {
    u"additive",  u"sautoupd", u"scompose", u"shidden",     u"slocked", u"spersonal",
    u"spriority", u"sqformat", u"sreply",   u"ssemihidden", u"styrsid", u"sunhideused",
};

// Properties of text or of a paragraph that become RTF's own again by the word with the number 0.
constexpr std::u16string_view undoneByZero[] = {
    u"b",   u"caps",      u"cb", u"cbpat", u"cf",      u"chcbpat", u"dn",     u"embo",    u"expnd", u"expndtw",
    u"fi",  u"highlight", u"i",  u"impr",  u"kerning", u"li",      u"lin",    u"ls",      u"outl",  u"ri",
    u"rin", u"sa",        u"sb", u"scaps", u"shad",    u"sl",      u"strike", u"striked", u"up",    u"v",
};

// Those that become so by another word.
struct Undoing {
    std::u16string_view word;
    std::array<std::u16string_view, 6> undone;
};
constexpr Undoing undoings[] = {
    {u"\\ulnone", {u"ul", u"uld", u"uldash", u"uldb", u"ulw", u"ulwave"}},
    {u"\\nosupersub", {u"sub", u"super"}},
    {u"\\fs24", {u"fs"}},
    {u"\\ql", {u"qc", u"qr", u"qj", u"qd"}},
    {u"\\outlinelevel9", {u"outlinelevel"}},
};

// Empty when no word undoes these letters.
std::u16string undoingWord(std::u16string_view letters) {
    if (std::ranges::count(undoneByZero, letters) != 0) return u"\\" + std::u16string(letters) + u"0";
    for (const Undoing& undoing : undoings) {
        if (std::ranges::count(undoing.undone, letters) != 0) return std::u16string(undoing.word);
    }
    return {};
}

template <typename Take>
void takeWords(std::u16string_view look, Take take) {
    for (WordRun words(look.substr(0, longestLook), 0); words.next();) take(words.word());
}

}  // namespace

std::optional<ControlWord> findWord(std::u16string_view look, std::u16string_view letters) {
    look = look.substr(0, longestLook);
    for (std::size_t at = 0; (at = look.find(letters, at)) != look.npos; ++at) {
        if (at == 0 || look[at - 1] != u'\\') continue;
        const ControlWord word = readWord(look, at - 1);
        if (word.letters == letters) return word;
    }
    return std::nullopt;
}

std::u16string directWords(std::u16string_view look) {
    std::u16string words;
    takeWords(look, [&](const ControlWord& word) {
        if (std::ranges::count(styleWords, word.letters) == 0)
            words.append(look.substr(word.begin, word.end - word.begin));
    });
    return words;
}

std::u16string undoingWords(std::u16string_view look, std::u16string_view own) {
    std::u16string words;
    takeWords(look, [&](const ControlWord& word) {
        if (!findWord(own, word.letters)) words += undoingWord(word.letters);
    });
    return words;
}

}  // namespace velmor
