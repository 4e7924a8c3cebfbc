#include "rtf/tables/RowDefinition.h"

namespace velmor {

RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept {
    text = text.substr(0, limit);
    RowDefinition definition{{begin, begin}};
    for (WordRun run(text, begin); run.next();) {
        const ControlWord& word = run.word();
        const WordMeaning known = meaningOf(word.letters);
        const Word meaning = known.word;
        const bool isFirst = word.begin == begin;
        if (meaning == Word::cellx) {
            ++definition.columns;
            definition.right = static_cast<std::size_t>(numberOf(word.number));
        } else if (meaning == Word::cell || meaning == Word::nestcell || meaning == Word::intbl ||
                   meaning == Word::itap) {
            break;
        } else if (!isFirst && (meaning == Word::nestrow || meaning == Word::row || meaning == Word::trowd ||
                                word.letters.starts_with(u"par"))) {
            definition.range.end = word.begin;
            break;
        }
        if (isFirst || known.is(WordTrait::row)) definition.range.end = endWithBlank(text, word);
    }
    return definition;
}

}  // namespace velmor
