#include "rtf/pages/PageSetup.h"

#include <utility>

#include "rtf/read/RtfReader.h"

namespace velmor {

void PageSetup::turnLandscape() noexcept {
    landscape = true;
    if (values[height] > values[width]) std::swap(values[height], values[width]);
}

void PageSetup::turnPortrait() noexcept {
    landscape = false;
    if (values[width] > values[height]) std::swap(values[height], values[width]);
}

std::u16string PageSetup::words() const {
    std::u16string text = landscape ? u"\\lndscpsxn" : u"";
    for (const Value value : writtenOrder) text += word(value);
    return text;
}

std::u16string PageSetup::wordsUnlike(const PageSetup& other) const {
    std::u16string text;
    for (const Value value : writtenOrder) {
        if (values[value] != other.values[value]) text += word(value);
    }
    return text;
}

std::u16string PageSetup::word(Value value) const {
    return std::u16string(sectionWords[value]) + decimal(values[value]);
}

bool numberTextAt(std::u16string_view text, std::size_t index, std::u16string_view& number) noexcept {
    index = skipWhiteSpace(text, index);
    const std::size_t end = text.find_first_of(u"\r\\{} ", index);
    if (end == text.npos) return false;
    number = text.substr(index, end - index);
    while (!number.empty() && isWhiteSpace(number.back())) number.remove_suffix(1);
    return true;
}

bool wordNumberAt(std::u16string_view text, std::size_t index, std::u16string_view word, bool tolerant,
                  std::u16string_view& number) noexcept {
    if (!tolerant) return numberTextAt(text, index + word.size(), number);
    number = readWord(text, index).number;
    return !number.empty();
}

}  // namespace velmor
