#include "rtf/read/ParagraphText.h"

#include <algorithm>
#include <iterator>

#include "rtf/read/BraceScanner.h"
#include "rtf/read/ControlWord.h"
#include "rtf/read/RtfScanner.h"
#include "rtf/read/WordTable.h"

namespace velmor {
namespace {

// Each table is sorted.
constexpr std::u16string_view paragraphWordsOnly[] = {
    u"adjustright", u"aspalpha",
    u"aspnum",      u"box",
    u"brsp",        u"cbpat",
    u"cfpat",       u"contextualspace",
    u"cufi",        u"culi",
    u"curi",        u"faauto",
    u"facenter",    u"fafixed",
    u"fahang",      u"faroman",
    u"favar",       u"fi",
    u"hyphpar",     u"indmirror",
    u"keep",        u"keepn",
    u"li",          u"lin",
    u"lisa",        u"lisb",
    u"ltrpar",      u"noline",
    u"nooverflow",  u"nosnaplinegrid",
    u"nowidctlpar", u"nowwrap",
    u"qc",          u"qd",
    u"qj",          u"qk",
    u"ql",          u"qr",
    u"qt",          u"ri",
    u"rin",         u"rtlpar",
    u"s",           u"sa",
    u"saauto",      u"sb",
    u"sbauto",      u"shading",
    u"sl",          u"slmult",
    u"tb",          u"tldot",
    u"tleq",        u"tlhyph",
    u"tlmdot",      u"tlth",
    u"tlul",        u"tqc",
    u"tqdec",       u"tqr",
    u"tx",          u"widctlpar",
    u"wrapdefault",
};
constexpr std::u16string_view wordsBehind[] = {
    u"cell", u"nestcell", u"nestrow", u"par", u"pard", u"row", u"sect", u"trowd",
};
static_assert(std::is_sorted(std::begin(paragraphWordsOnly), std::end(paragraphWordsOnly)));
static_assert(std::is_sorted(std::begin(wordsBehind), std::end(wordsBehind)));

template <std::size_t count>
bool isIn(const std::u16string_view (&words)[count], std::u16string_view letters) noexcept {
    return std::binary_search(std::begin(words), std::end(words), letters);
}

enum class Content { shown, passedOver, open };

// What a group is, by the word that it begins with; `index` is that of its brace.
Content contentOf(std::u16string_view text, std::size_t index) noexcept {
    std::size_t at = skipWhiteSpace(text, index + 1);
    const bool isIgnorable = standsAt(text, at, u"\\*");
    if (isIgnorable) at = skipWhiteSpace(text, at + 2);
    if (!standsAt(text, at, u"\\")) return Content::open;
    const std::u16string_view letters = readWord(text, at).letters;
    if (wordIs(WordTrait::shownGroup, letters)) return Content::shown;
    return isIgnorable || wordIs(WordTrait::hiddenGroup, letters) ? Content::passedOver : Content::open;
}

// Whether the symbol or word at the index is seen; `index` moves behind it.
bool showsWord(std::u16string_view text, std::size_t& index) noexcept {
    const ControlWord word = readWord(text, index);
    if (word.letters.empty()) {
        constexpr std::u16string_view shownSymbols = u"'~_{}\\";
        const char16_t symbol = index + 1 < text.size() ? text[index + 1] : u'*';
        index += 2;
        return shownSymbols.find(symbol) != shownSymbols.npos;
    }
    index = word.end + standsAt(text, word.end, u" ");
    return wordIs(WordTrait::shown, word.letters);
}

}  // namespace

std::size_t firstShown(std::u16string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        if (text[at] == u'\\') {
            if (showsWord(text, at)) return begin;
        } else if (text[at] == u'{') {
            const Content content = contentOf(text, at);
            if (content == Content::shown) return begin;
            const std::size_t end = content == Content::open ? at : findGroupEnd(text, at + 1, true);
            if (end == noGroupEnd) break;
            at = end + 1;
        } else if (text[at] == u'}' || isWhiteSpace(text[at])) {
            ++at;
        } else {
            return begin;
        }
    }
    return text.size();
}

std::u16string paragraphWords(std::u16string_view text, std::size_t index) {
    constexpr std::size_t longestRun = 600;
    text = text.substr(index, longestRun);
    std::u16string words;
    for (std::size_t at = 0; standsAt(text, at, u"\\") && at < text.size();) {
        const ControlWord word = readWord(text, at);
        const bool isCut = word.end == text.size();
        const bool isOwn = at == 0 || !isIn(wordsBehind, word.letters);
        if (word.letters.empty() || isCut || !isOwn) break;
        if (isIn(paragraphWordsOnly, word.letters) || word.letters.substr(0, 4) == u"brdr") {
            words.append(text.substr(at, word.end - at));
        }
        at = word.end + standsAt(text, word.end, u" ");
        while (at < text.size() && (text[at] == u'\r' || text[at] == u'\n')) ++at;
    }
    return words;
}

}  // namespace velmor
