#include "rtf/CodePages.h"

#include "rtf/BraceScanner.h"

namespace velmor {
namespace {

#include "rtf/CodePages.inc"

}  // namespace

const CodePage* findCodePage(std::int32_t number) noexcept {
    for (const CodePage& page : codePages) {
        if (page.number == number) return &page;
    }
    return nullptr;
}

std::int32_t numberOf(std::u16string_view digits) noexcept {
    const bool negative = digits.substr(0, 1) == u"-";
    std::int32_t value = 0;
    for (const char16_t digit : digits.substr(negative)) {
        if (value > 100000000) break;
        value = value * 10 + (digit - u'0');
    }
    return negative ? -value : value;
}

std::int32_t codePageNamedBy(const ControlWord& word) noexcept {
    if (word.letters == u"ansicpg") return numberOf(word.number);
    if (word.letters == u"ansi") return windowsLatin;
    if (word.letters == u"mac") return 10000;
    if (word.letters == u"pc") return 437;
    return word.letters == u"pca" ? 850 : 0;
}

std::int32_t codePageOfDocument(std::u16string_view text, std::size_t header) noexcept {
    std::int32_t page = windowsLatin;
    for (std::size_t at = header; (at = skipWhiteSpace(text, at)) < text.size();) {
        if (text[at] == u'{') {
            const std::size_t end = findGroupEnd(text, at + 1, true);
            if (end == noGroupEnd) break;
            at = end + 1;
            continue;
        }
        if (text[at] != u'\\') break;
        const ControlWord word = readWord(text, at);
        if (word.letters.empty()) break;
        if (const std::int32_t named = codePageNamedBy(word)) page = named;
        at = word.end;
    }
    return page;
}

}  // namespace velmor
