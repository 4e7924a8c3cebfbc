#include "rtf/tables/RowDefinition.h"

#include <cstring>

#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

using std::string_view_literals::operator""sv;

enum class Part { ofRow, other, endsRun, endsDefinition };

Part partIf(bool isOfRow) noexcept {
    return isOfRow ? Part::ofRow : Part::other;
}

Part classify(std::u16string_view letters) noexcept {
    switch (letters[0]) {
        case u'c':
            if (letters == u"cell"sv) return Part::endsRun;
            return partIf(letters.starts_with(u"cl"sv) || letters == u"cellx"sv);
        case u'i':
            if (letters == u"intbl"sv || letters == u"itap"sv) return Part::endsRun;
            return partIf(letters.starts_with(u"irow"sv));
        case u'l':
            return partIf(letters == u"lastrow"sv || letters == u"ltrrow"sv);
        case u'n':
            if (letters == u"nestcell"sv) return Part::endsRun;
            return letters == u"nestrow"sv ? Part::endsDefinition : Part::other;
        case u'p':
            return letters.starts_with(u"par"sv) ? Part::endsDefinition : Part::other;
        case u'r':
            return letters == u"row"sv ? Part::endsDefinition : partIf(letters == u"rtlrow"sv);
        case u't':
            if (letters == u"trowd"sv) return Part::endsDefinition;
            if (letters.starts_with(u"tr"sv) || letters == u"ts"sv) return Part::ofRow;
            return partIf(letters.starts_with(u"tbl"sv) || letters.starts_with(u"tpos"sv) ||
                          letters.starts_with(u"tph"sv) || letters.starts_with(u"tpv"sv) ||
                          letters.starts_with(u"tdfrm"sv));
        default:
            return Part::other;
    }
}

// Whether a definition whose words stand at `index` as well would end behind them.
bool endsDefinitionAt(std::u16string_view text, std::size_t index) noexcept {
    if (!standsAt(text, index, u"\\"sv)) return false;
    const std::u16string_view letters = readWord(text, index).letters;
    return !letters.empty() && classify(letters) == Part::endsDefinition;
}

}  // namespace

RowDefinition rowDefinitionAt(std::u16string_view text, std::size_t begin, std::size_t limit) noexcept {
    text = text.substr(0, limit);
    RowDefinition definition{{begin, begin}};  // up to the last word that is about rows
    for (std::size_t at = begin; at < text.size();) {
        if (isWhiteSpace(text[at])) {
            ++at;
            continue;
        }
        if (text[at] != u'\\') break;
        const ControlWord word = readWord(text, at);
        if (word.letters.empty()) break;
        const Part part = at == begin ? Part::ofRow : classify(word.letters);
        if (part == Part::endsDefinition) {
            definition.range.end = at;
            break;
        }
        if (part == Part::endsRun) break;
        if (word.letters == u"cellx"sv) {
            ++definition.columns;
            definition.lastColumn = at;
        }
        at = word.end + standsAt(text, word.end, u" "sv);
        if (part == Part::ofRow) definition.range.end = at;
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
