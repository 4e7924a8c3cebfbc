#include "rtf/pages/SectionGroups.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "automation/NumberText.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

constexpr PageSetup::Words groupWords = {u"\\paperheight", u"\\paperwidth", u"\\marginl",
                                         u"\\marginr",     u"\\margint",    u"\\marginb"};

// With a point on every machine, so that a template gives the same document.
std::optional<double> number(std::u16string_view text) {
    const auto parsed = automation::portable::parseNumberText(text);
    if (!parsed) return std::nullopt;
    if (parsed->radixValue) return *parsed->radixValue;
    return automation::portable::doubleOf(*parsed);
}

std::optional<std::int32_t> rounded(std::optional<double> value) {
    if (!value) return std::nullopt;
    const double whole = std::nearbyint(*value);
    const bool fits =
        whole >= std::numeric_limits<std::int32_t>::min() && whole <= std::numeric_limits<std::int32_t>::max();
    return fits ? std::optional(static_cast<std::int32_t>(whole)) : std::nullopt;
}

std::optional<std::int32_t> twips(std::u16string_view text) {
    std::optional<double> value = number(text);
    if (value && *value <= 50) value = *value / 2.54 * 1440;
    return rounded(value);
}

}  // namespace

std::size_t GroupWord::find(std::u16string_view text, std::size_t begin, std::size_t end) {
    if (next_ < begin) {
        next_ = begin;
        isFound_ = false;
    }
    if (!isFound_ && next_ < end) {
        RtfReader scanner(text, next_, end);
        while (!isFound_ && scanner.nextWord()) isFound_ = standsAt(text, scanner.position(), word_);
        next_ = isFound_ ? scanner.position() : end;
    }
    return isFound_ ? next_ : nowhere;
}

bool SectionGroups::Value::isGiven(std::u16string_view text, std::size_t begin, std::size_t end) {
    const std::size_t at = word_.find(text, begin, end);
    if (at == GroupWord::nowhere) return false;
    if (std::exchange(readAt_, at) == at) return true;
    std::u16string_view digits;
    numberTextAt(text, at + length_, digits);  // at most up to the group's brace
    number_ = twips(digits);
    return true;
}

SectionGroups::SectionGroups(std::u16string_view text, std::size_t begin, std::size_t end, const PageSetup& page,
                             bool tolerant)
    : text_(text), begin_(begin), end_(end), page_(page), tolerant_(tolerant) {
    for (const std::u16string_view word : groupWords) values_.emplace_back(word);
}

bool SectionGroups::read(std::size_t index) {
    if (groupEnd_ <= index) groupEnd_ = text_.find(u'}', index);
    if (groupEnd_ == text_.npos) return false;
    for (std::size_t value = 0; value < PageSetup::valueCount; ++value) {
        if (!readValue(value, index)) return false;
    }
    if (landscape_.find(text_, index, groupEnd_) != GroupWord::nowhere) {
        page_.turnLandscape();
    } else if (portrait_.find(text_, index, groupEnd_) != GroupWord::nowhere) {
        page_.turnPortrait();
    } else {
        page_.landscape = false;
    }
    return true;
}

bool SectionGroups::readValue(std::size_t value, std::size_t begin) {
    std::optional<std::int32_t> read;
    if (values_[value].isGiven(text_, begin, groupEnd_)) {
        read = values_[value].number();
    } else {
        const auto& digits = documentNumber(value);
        if (!digits) return true;
        read = rounded(number(*digits));
    }
    if (read) page_.values[value] = *read;
    return read.has_value();
}

// The document's first words do not change while its groups are read.
const std::optional<std::u16string_view>& SectionGroups::documentNumber(std::size_t value) {
    if (!documentRead_) findDocumentWords();
    return documentNumbers_[value];
}

void SectionGroups::findDocumentWords() {
    documentRead_ = true;
    std::array<bool, PageSetup::valueCount> seen{};
    RtfReader scanner(text_, begin_, end_);
    while (scanner.nextWord()) {
        const std::size_t index = scanner.position();
        if (text_[index + 1] != u'p' && text_[index + 1] != u'm') continue;
        for (std::size_t i = 0; i < PageSetup::valueCount; ++i) {
            const std::u16string_view word = PageSetup::documentWords[i];
            if (seen[i] || !wordStandsAt(text_, index, word)) continue;
            seen[i] = true;
            std::u16string_view digits;
            if (wordNumberAt(text_, index, word, tolerant_, digits)) documentNumbers_[i] = digits;
        }
        if (std::find(seen.begin(), seen.end(), false) == seen.end()) return;
    }
}

}  // namespace velmor
