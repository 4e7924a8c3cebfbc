#include "rtf/tables/RowDefinition.h"

#include <cstring>

#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

enum class Part { ofRow, other, endsRun, endsDefinition };

Part partOf(std::u16string_view letters) noexcept {
    const WordMeaning meaning = meaningOf(letters);
    switch (meaning.word) {
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
            if (letters.starts_with(u"par")) return Part::endsDefinition;
            return meaning.is(WordTrait::row) ? Part::ofRow : Part::other;
    }
}

// Whether a definition with the same words at `index` would end after them.
bool endsDefinitionAt(std::u16string_view text, std::size_t index) noexcept {
    return standsAt(text, index, u"\\") && partOf(readWord(text, index).letters) == Part::endsDefinition;
}

}  // namespace

RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept {
    text = text.substr(0, limit);
    RowDefinition definition{{begin, begin}};  // up to the last word about rows
    for (WordRun run(text, begin); run.next();) {
        const ControlWord& word = run.word();
        const Part part = word.begin == begin ? Part::ofRow : partOf(word.letters);
        if (part == Part::endsDefinition) definition.range.end = word.begin;
        if (part == Part::endsDefinition || part == Part::endsRun) break;
        if (word.letters == u"cellx") {
            ++definition.columns;
            definition.lastColumn = word.begin;
        }
        if (part == Part::ofRow) definition.range.end = endWithBlank(text, word);
    }
    return definition;
}

RowDefinition rowDefinitionLike(std::u16string_view text, std::size_t begin, std::size_t limit,
                                const RowDefinition& known) noexcept {
    const std::size_t length = known.range.end - known.range.begin;
    const std::u16string_view readable = text.substr(0, limit);
    const bool isSame =
        begin + length < readable.size() &&
        std::memcmp(text.data() + begin, text.data() + known.range.begin, length * sizeof(char16_t)) == 0;
    if (!isSame || !endsDefinitionAt(readable, begin + length)) return rowDefinitionAt(text, begin, limit);
    return {{begin, begin + length}, known.columns, known.lastColumn - known.range.begin + begin};
}

}  // namespace velmor
