#include "rtf/RowDefinition.h"

#include <algorithm>
#include <iterator>

#include "rtf/ControlWord.h"
#include "rtf/RtfScanner.h"

namespace velmor {
namespace {

enum class Part { ofRow, other, endsRun, endsDefinition };

bool isOneOf(std::u16string_view letters, std::initializer_list<std::u16string_view> words) noexcept {
    return std::find(words.begin(), words.end(), letters) != words.end();
}

Part classify(std::u16string_view letters) noexcept {
    if (letters.substr(0, 3) == u"par" || isOneOf(letters, {u"row", u"nestrow", u"trowd"})) return Part::endsDefinition;
    if (isOneOf(letters, {u"intbl", u"itap", u"cell", u"nestcell"})) return Part::endsRun;
    if (isOneOf(letters, {u"cellx", u"lastrow", u"ltrrow", u"rtlrow", u"ts"})) return Part::ofRow;
    for (const std::u16string_view beginning : {u"tr", u"cl", u"irow", u"tbl", u"tpos", u"tph", u"tpv", u"tdfrm"}) {
        if (letters.substr(0, beginning.size()) == beginning) return Part::ofRow;
    }
    return Part::other;
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
        if (word.letters == u"cellx") {
            ++definition.columns;
            definition.lastColumn = at;
        }
        at = word.end + standsAt(text, word.end, u" ");
        if (part == Part::ofRow) definition.range.end = at;
    }
    return definition;
}

}  // namespace velmor
