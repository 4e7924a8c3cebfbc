#include "rtf/tables/RowDefinition.h"

#include <algorithm>

namespace velmor {
namespace {

enum class Part { other, column, endsRun, endsDefinition };

Part partOf(std::u16string_view letters) noexcept {
    switch (meaningOf(letters).word) {
        case Word::cellx:
            return Part::column;
        case Word::cell:
        case Word::nestcell:
        case Word::intbl:
        case Word::itap:
            return Part::endsRun;
        case Word::nestrow:
        case Word::row:
        case Word::trowd:
            return Part::endsDefinition;
        default:
            return letters.starts_with(u"par") ? Part::endsDefinition : Part::other;
    }
}

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
        const Part part = partOf(word.letters);
        if (part == Part::endsDefinition) {
            definition.range.end = word.begin;
            return definition;
        }
        if (part == Part::endsRun) {
            text = text.substr(0, word.begin);
            break;
        }
        if (part == Part::column) {
            ++definition.columns;
            definition.lastColumn = word.begin;
        }
    }
    definition.range.end = endOfRowWords(text, begin);
    return definition;
}

RowDefinition rowDefinitionLike(std::u16string_view text, std::size_t begin, std::size_t limit,
                                const RowDefinition& known) noexcept {
    const std::u16string_view words = known.range.of(text);
    const std::size_t end = begin + words.size();
    const bool isSame = end < limit && text[end] == u'\\' && std::equal(words.begin(), words.end(), &text[begin]);
    const bool endsHere = isSame && partOf(readWord(text.substr(0, limit), end).letters) == Part::endsDefinition;
    if (!endsHere) return rowDefinitionAt(text, begin, limit);
    return {{begin, end}, known.columns, known.lastColumn - known.range.begin + begin};
}

}  // namespace velmor
