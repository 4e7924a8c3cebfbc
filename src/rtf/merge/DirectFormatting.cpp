#include "rtf/merge/DirectFormatting.h"

#include <algorithm>

namespace velmor {
namespace {

// Words of a style's entry that mean nothing in text.
constexpr std::u16string_view styleWords[] = {
    u"additive",  u"sautoupd", u"scompose", u"shidden",     u"slocked", u"spersonal",
    u"spriority", u"sqformat", u"sreply",   u"ssemihidden", u"styrsid", u"sunhideused",
};

// What makes a property of text or of a paragraph RTF's own again.
struct Undoing {
    std::u16string_view letters;
    std::u16string_view word;
};
constexpr Undoing undoings[] = {
    {u"b", u"\\b0"},
    {u"i", u"\\i0"},
    {u"caps", u"\\caps0"},
    {u"scaps", u"\\scaps0"},
    {u"strike", u"\\strike0"},
    {u"striked", u"\\striked0"},
    {u"outl", u"\\outl0"},
    {u"shad", u"\\shad0"},
    {u"embo", u"\\embo0"},
    {u"impr", u"\\impr0"},
    {u"v", u"\\v0"},
    {u"ul", u"\\ulnone"},
    {u"uld", u"\\ulnone"},
    {u"uldash", u"\\ulnone"},
    {u"uldb", u"\\ulnone"},
    {u"ulw", u"\\ulnone"},
    {u"ulwave", u"\\ulnone"},
    {u"sub", u"\\nosupersub"},
    {u"super", u"\\nosupersub"},
    {u"up", u"\\up0"},
    {u"dn", u"\\dn0"},
    {u"expnd", u"\\expnd0"},
    {u"expndtw", u"\\expndtw0"},
    {u"kerning", u"\\kerning0"},
    {u"fs", u"\\fs24"},
    {u"cf", u"\\cf0"},
    {u"cb", u"\\cb0"},
    {u"chcbpat", u"\\chcbpat0"},
    {u"highlight", u"\\highlight0"},
    {u"qc", u"\\ql"},
    {u"qr", u"\\ql"},
    {u"qj", u"\\ql"},
    {u"qd", u"\\ql"},
    {u"li", u"\\li0"},
    {u"lin", u"\\lin0"},
    {u"ri", u"\\ri0"},
    {u"rin", u"\\rin0"},
    {u"fi", u"\\fi0"},
    {u"sb", u"\\sb0"},
    {u"sa", u"\\sa0"},
    {u"sl", u"\\sl0"},
    {u"ls", u"\\ls0"},
    {u"outlinelevel", u"\\outlinelevel9"},
    {u"cbpat", u"\\cbpat0"},
};

template <typename Take>
void forEachWord(std::u16string_view look, Take take) {
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
    forEachWord(look, [&](const ControlWord& word) {
        const bool isOfStyle =
            std::find(std::begin(styleWords), std::end(styleWords), word.letters) != std::end(styleWords);
        if (!isOfStyle) words.append(look.substr(word.begin, word.end - word.begin));
    });
    return words;
}

std::u16string undoingWords(std::u16string_view look, std::u16string_view own) {
    std::u16string words;
    forEachWord(look, [&](const ControlWord& word) {
        const auto undoing = std::find_if(std::begin(undoings), std::end(undoings),
                                          [&](const Undoing& each) { return each.letters == word.letters; });
        if (undoing != std::end(undoings) && !findWord(own, word.letters)) words += undoing->word;
    });
    return words;
}

}  // namespace velmor
