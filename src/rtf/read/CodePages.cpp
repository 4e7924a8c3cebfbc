#include "rtf/read/CodePages.h"

#include <algorithm>

#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

#include "rtf/read/CodePages.inc"

}  // namespace

const CodePage* findCodePage(std::int32_t number) noexcept {
    const auto* const found = std::ranges::find(codePages, number, &CodePage::number);
    return found == std::end(codePages) ? nullptr : found;
}

std::u16string_view characterSetOf(std::int32_t page) noexcept {
    if (page == 932) return u"128";
    if (page == 936) return u"134";
    if (page == 949) return u"129";
    return page == 950 ? u"136" : u"";
}

std::int32_t byteAt(std::u16string_view text, std::size_t index) noexcept {
    const auto digit = [&](std::size_t at) { return at < text.size() ? hexadecimalDigit(text[at]) : -1; };
    const std::int32_t high = digit(index + 2), low = digit(index + 3);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

std::u16string unicodeWord(char16_t unit, std::int32_t fallback) {
    const auto count = static_cast<std::size_t>(std::clamp(fallback, 0, 8));
    std::u16string text = u"\\u" + decimal(static_cast<std::int16_t>(unit));
    return count == 0 ? text + u" " : text.append(count, u'?');
}

std::u16string withCharacters(std::u16string_view text, const CodePage& from, const CodePage* to) {
    std::u16string result;
    bool standsForOne = false;  // the next unit is the fallback of a \u
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        const std::int32_t byte = standsAt(text, at, u"\\'") ? byteAt(text, at) : -1;
        const bool means = byte >= 0x80 && !standsForOne;
        if (text[at] == u'\\') {
            const ControlWord word = readWord(text, at);
            end = byte >= 0 ? at + 4 : std::min(text.size(), std::max(word.end, at + 2));
            standsForOne = word.letters == u"u";
            if (standsForOne) end += standsAt(text, end, u" ");
        } else {
            standsForOne = false;
        }
        const char16_t unit = means ? from.meaning(static_cast<std::uint8_t>(byte)) : u'\0';
        if (means && (to == nullptr || to->meaning(static_cast<std::uint8_t>(byte)) != unit)) {
            result += unicodeWord(unit, 1);
        } else {
            result.append(text, at, end - at);
        }
        at = end;
    }
    return result;
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
    for (DocumentHeader words(text, header); words.next();) {
        if (const std::int32_t named = codePageNamedBy(words.word())) page = named;
    }
    return page;
}

}  // namespace velmor
