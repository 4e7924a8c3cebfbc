#include "rtf/edit/RepeatedText.h"

#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

// The end of the last row and of the groups that it lies in; 0 if the text shows anything outside of its rows.
std::size_t endOfRows(std::u16string_view text) {
    std::size_t first = text.npos, end = 0, depth = 0;
    bool isEnding = false;  // no word or opening brace followed the last row
    for (RtfReader reader(text, 0, text.size(), true); reader.next();) {
        if (reader.isWord(u"\\row") || (isEnding && reader.closes())) {
            end = reader.closes() ? reader.position() + 1 : endWithBlank(text, reader.word());
            depth = reader.depth();
            isEnding = true;
        } else {
            isEnding = false;
            if (first == text.npos && reader.isWord(u"\\trowd")) first = reader.position();
        }
    }
    const bool isTable = first != text.npos && end > first && depth == 0;
    return isTable && !showsText(text.substr(0, first)) && !showsText(text.substr(end)) ? end : 0;
}

// The words and hidden groups at the beginning.
std::size_t endOfHeader(std::u16string_view document) {
    std::size_t end = hostHeaderStart(document, 0);
    for (std::size_t at = end; (at = skipWhiteSpace(document, at)) < document.size(); end = at) {
        if (document[at] == u'{') {
            const GroupOpening opening = readOpening(document, at);
            if (!opening.ignorable && !wordIs(WordTrait::hiddenGroup, opening.letters)) break;
            at = findGroupEnd(document, at + 1, true);
            if (at++ == noGroupEnd) break;
        } else {
            if (document[at] != u'\\') break;
            const ControlWord word = readWord(document, at);
            const WordMeaning meaning = meaningOf(word.letters);
            if (word.letters.empty() || meaning.is(WordTrait::beginsText) || meaning.word == Word::trowd) break;
            at = endWithBlank(document, word);
        }
    }
    return end;
}

}  // namespace

std::optional<RepeatedText> repeatedTextOf(std::u16string_view document) {
    const std::size_t brace = findGroupEnd(document, 1, true);
    if (brace == noGroupEnd) return std::nullopt;
    const std::size_t begin = endOfHeader(document);
    const std::u16string_view text = document.substr(begin, brace - begin);
    const std::u16string before(document.substr(0, begin));
    // The paragraph that must follow a table is that of the text around.
    if (const std::size_t rows = endOfRows(text)) return {{before, std::u16string(text.substr(0, rows)), u"\\pard}"}};
    return {{before, u"{" + std::u16string(text) + u"}", u"}"}};
}

}  // namespace velmor
