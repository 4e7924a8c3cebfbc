#include "rtf/RowDefinition.h"

#include <algorithm>
#include <initializer_list>

#include "rtf/ControlWord.h"
#include "rtf/RtfScanner.h"

namespace velmor {
namespace {

enum class Part { ofRow, other, endsRun, endsDefinition };

bool beginsWithOneOf(std::u16string_view letters, std::initializer_list<std::u16string_view> beginnings) noexcept {
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](std::u16string_view beginning) { return letters.substr(0, beginning.size()) == beginning; });
}

Part partIf(bool isOfRow) noexcept {
    return isOfRow ? Part::ofRow : Part::other;
}

Part classify(std::u16string_view letters) noexcept {
    switch (letters[0]) {
        case u'c':
            if (letters == u"cell") return Part::endsRun;
            return partIf(letters.substr(0, 2) == u"cl" || letters == u"cellx");
        case u'i':
            if (letters == u"intbl" || letters == u"itap") return Part::endsRun;
            return partIf(letters.substr(0, 4) == u"irow");
        case u'l':
            return partIf(letters == u"lastrow" || letters == u"ltrrow");
        case u'n':
            if (letters == u"nestcell") return Part::endsRun;
            return letters == u"nestrow" ? Part::endsDefinition : Part::other;
        case u'p':
            return letters.substr(0, 3) == u"par" ? Part::endsDefinition : Part::other;
        case u'r':
            return letters == u"row" ? Part::endsDefinition : partIf(letters == u"rtlrow");
        case u't':
            if (letters == u"trowd") return Part::endsDefinition;
            return partIf(letters == u"ts" ||
                          beginsWithOneOf(letters, {u"tr", u"tbl", u"tpos", u"tph", u"tpv", u"tdfrm"}));
        default:
            return Part::other;
    }
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
