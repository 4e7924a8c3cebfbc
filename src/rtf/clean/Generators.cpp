#include "rtf/clean/Generators.h"

#include <algorithm>
#include <string_view>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view generatorOpening = u"{\\*\\generator Korvane RTF Control";
constexpr std::size_t longestGroup = 69;
constexpr std::size_t longestWord = 15;

// Without tabs: readers show them.
std::size_t skipBlanks(std::u16string_view text, std::size_t index) noexcept {
    return std::min(text.find_first_not_of(u" \r\n", index), text.size());
}

// The end of the run of section words at the index. A word extends to the next backslash or brace, and does not
// count if that is too far.
std::size_t runEnd(std::u16string_view text, std::size_t index) noexcept {
    while (standsAt(text, index, u"\\")) {
        const ControlWord word = readWord(text, index);
        if (!wordIs(WordTrait::generatorRest, word.letters)) return index;
        const std::u16string_view next = text.substr(index + 1, longestWord);
        const bool atEnd = index + 1 + next.size() == text.size();
        if (next.find_first_of(u"\\{}") == next.npos && !(atEnd && next.size() < longestWord)) return index;
        index = skipBlanks(text, word.end);
    }
    return index;
}

}  // namespace

void Module1::RemoveGeneratorSectionWords(std::u16string& psText) {
    const std::u16string_view text = psText;
    TextEdits edits;
    for (std::size_t at = 0; (at = findText(text, generatorOpening, at, Comparison::binary)) != text.npos;) {
        const std::size_t end = text.substr(at, longestGroup).find(u'}');
        at += generatorOpening.size();
        if (end == text.npos) continue;
        const std::size_t words = skipBlanks(text, at - generatorOpening.size() + end + 1);
        at = runEnd(text, words);
        if (at != words) edits.cut(words, at);
    }
    if (edits.empty()) return;
    edits.apply(psText);
    psText.resize(psText.find_last_not_of(u' ') + 1);
}

std::u16string Module1::RemoveDuplicateGenerators(std::u16string& psText, std::u16string psKept) {
    constexpr std::u16string_view opening = u"{\\*\\generator";
    const std::u16string_view text = psText;
    TextEdits edits;
    RtfSearch search(text);
    for (std::size_t at = 0; (at = search.find(opening, at)) != text.npos;) {
        const std::size_t end = text.find(u'}', at + opening.size());
        if (end == text.npos) break;
        const std::u16string_view group = text.substr(at, end + 1 - at);
        if (group == psKept) {
            edits.cut(at, end + 1);
        } else {
            psKept = group;
        }
        at = end + 1;
    }
    edits.apply(psText);
    return psKept;
}

}  // namespace velmor
