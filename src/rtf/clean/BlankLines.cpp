#include "rtf/clean/BlankLines.h"

#include <string_view>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/RtfReader.h"
#include "text/Compare.h"

namespace velmor {
namespace {

constexpr std::u16string_view lineEnd = u"\r\n";
constexpr std::u16string_view doubled = u"\r\n\r\n";

void collapse(std::u16string_view text, std::size_t from, std::size_t limit, TextEdits& edits) {
    const std::u16string_view part = text.substr(0, limit);
    while ((from = findText(part, doubled, from, Comparison::binary)) != part.npos) {
        const std::size_t begin = from += lineEnd.size();
        while (standsAt(part, from, lineEnd)) from += lineEnd.size();
        edits.replace(begin, from, {});
    }
}

}  // namespace

void Module1::CollapseBlankLines(std::u16string& psText, const CleanOptions& options) {
    const std::u16string_view text = psText;
    TextEdits edits;
    std::size_t from = 0;
    // The data of a picture is not text and must keep its length.
    RtfSearch search(text);
    for (std::size_t at = 0; options.tolerant && (at = search.findWord(u"\\bin", from)) != text.npos;) {
        collapse(text, from, at, edits);
        from = skipEscape(text, at);
    }
    collapse(text, from, text.size(), edits);
    edits.apply(psText);
}

}  // namespace velmor
