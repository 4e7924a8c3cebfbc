#include "rtf/tables/RowDefinition.h"

namespace velmor {
namespace {

// The end of the last word about rows in a run of words that begins with such a word.
std::size_t endOfRowWords(std::u16string_view run, std::size_t begin) noexcept {
    std::size_t end = begin;
    for (WordRun words(run, begin); words.next();) {
        const ControlWord& word = words.word();
        if (word.begin == begin || wordIs(WordTrait::row, word.letters)) end = endWithBlank(run, word);
    }
    return end;
}

}  // namespace

RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept {
    static const WordSet partWords({}, {Word::cell, Word::cellx, Word::intbl, Word::itap, Word::nestcell, Word::nestrow,
                                        Word::par, Word::row, Word::trowd});
    text = text.substr(0, limit);
    RowDefinition definition{{begin, begin}};
    for (WordRun run(text, begin); run.next();) {
        const ControlWord& word = run.word();
        if (word.begin == begin || !partWords.mayHold(text, word.begin)) continue;
        const Word meaning = meaningOf(word.letters).word;
        if (meaning == Word::cellx) {
            ++definition.columns;
            definition.right = static_cast<std::size_t>(numberOf(word.number));
        } else if (meaning == Word::cell || meaning == Word::nestcell || meaning == Word::intbl ||
                   meaning == Word::itap) {
            text = text.substr(0, word.begin);
            break;
        } else if (meaning == Word::nestrow || meaning == Word::row || meaning == Word::trowd ||
                   word.letters.starts_with(u"par")) {
            definition.range.end = word.begin;
            return definition;
        }
    }
    definition.range.end = endOfRowWords(text, begin);
    return definition;
}

}  // namespace velmor
