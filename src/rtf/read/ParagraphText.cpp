#include "rtf/read/ParagraphText.h"

#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

// Whether the symbol or word at the index shows; `index` moves past it.
bool showsWord(std::u16string_view text, std::size_t& index) noexcept {
    const ControlWord word = readWord(text, index);
    const std::size_t symbol = index + 1;
    index = word.letters.empty() ? index + 2 : endWithBlank(text, word);
    if (word.letters.empty()) return symbol < text.size() && isShownSymbol(text[symbol]);
    return wordIs(WordTrait::shown, word.letters);
}

}  // namespace

std::size_t firstShown(std::u16string_view text) noexcept {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t begin = at;
        if (text[at] == u'\\') {
            if (showsWord(text, at)) return begin;
        } else if (text[at] == u'{') {
            const GroupOpening opening = readOpening(text, at);
            const WordMeaning meaning = meaningOf(opening.letters);
            if (meaning.is(WordTrait::shownGroup)) return begin;
            const bool isHidden =
                standsAt(text, opening.word, u"\\") && (opening.ignorable || meaning.is(WordTrait::hiddenGroup));
            const std::size_t end = isHidden ? findGroupEnd(text, at + 1, true) : at;
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
    for (std::size_t at = 0; at < text.size() && text[at] == u'\\';) {
        const ControlWord word = readWord(text, at);
        const bool isCut = word.end == text.size();
        const WordMeaning meaning = meaningOf(word.letters);
        const bool endsRun =
            meaning.is(WordTrait::endsParagraph) || meaning.word == Word::pard || meaning.word == Word::trowd;
        if (word.letters.empty() || isCut || (endsRun && at != 0)) break;
        if (meaning.is(WordTrait::paragraph)) words.append(text.substr(at, word.end - at));
        at = endWithBlank(text, word);
        while (at < text.size() && isLineEnd(text[at])) ++at;
    }
    return words;
}

}  // namespace velmor
