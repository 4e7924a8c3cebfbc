#include "rtf/pages/PageSetup.h"

#include <utility>

#include "rtf/read/RtfReader.h"

namespace velmor {

std::optional<std::size_t> PageSetup::sectionValue(std::u16string_view letters) noexcept {
    for (std::size_t value = 0; value < valueCount; ++value) {
        if (letters.starts_with(sectionWords[value])) return value;
    }
    return std::nullopt;
}

std::optional<std::size_t> PageSetup::documentValue(std::u16string_view letters) noexcept {
    for (std::size_t value = 0; value < valueCount; ++value) {
        if (letters == documentWords[value]) return value;
    }
    return std::nullopt;
}

void PageSetup::turn(bool toLandscape) noexcept {
    landscape = toLandscape;
    if (toLandscape ? values[height] > values[width] : values[width] > values[height]) {
        std::swap(values[height], values[width]);
    }
}

std::u16string PageSetup::words() const {
    std::u16string text = landscape ? u"\\lndscpsxn" : u"";
    for (std::size_t value = 0; value < valueCount; ++value) text += word(value);
    return text;
}

std::u16string PageSetup::wordsUnlike(const PageSetup& other) const {
    std::u16string text;
    for (std::size_t value = 0; value < valueCount; ++value) {
        if (values[value] != other.values[value]) text += word(value);
    }
    return text;
}

std::u16string PageSetup::word(std::size_t value) const {
    return u"\\" + std::u16string(sectionWords[value]) + decimal(values[value]);
}

std::optional<std::u16string_view> numberTextAt(std::u16string_view text, std::size_t index) noexcept {
    index = skipWhiteSpace(text, index);
    const std::size_t end = text.find_first_of(u"\r\\{} ", index);
    if (end == text.npos) return std::nullopt;
    std::u16string_view number = text.substr(index, end - index);
    while (!number.empty() && isWhiteSpace(number.back())) number.remove_suffix(1);
    return number;
}

std::optional<std::u16string_view> wordNumberAt(std::u16string_view text, std::size_t index, std::u16string_view word,
                                                bool tolerant) noexcept {
    if (!tolerant) return numberTextAt(text, index + 1 + word.size());
    const std::u16string_view number = readWord(text, index).number;
    return number.empty() ? std::nullopt : std::optional(number);
}

}  // namespace velmor
