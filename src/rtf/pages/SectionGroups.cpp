#include "rtf/pages/SectionGroups.h"

#include <cmath>
#include <limits>

#include "automation/NumberText.h"
#include "rtf/read/RtfReader.h"

namespace velmor {
namespace {

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

SectionGroups::SectionGroups(std::u16string_view text, std::size_t begin, std::size_t end, bool tolerant)
    : text_(text), tolerant_(tolerant) {
    if (tolerant) page_.values = PageSetup::defaults;
    readDocument(begin, end);
}

// The first word for each value counts, even without a number.
void SectionGroups::readDocument(std::size_t begin, std::size_t end) {
    std::array<bool, PageSetup::valueCount> seen{};
    RtfReader reader(text_, begin, end, tolerant_);
    for (std::size_t left = seen.size(); left > 0 && reader.nextWord();) {
        const ControlWord word = reader.word();
        const auto value = PageSetup::documentValue(word.letters);
        if (!value || seen[*value]) continue;
        seen[*value] = true;
        --left;
        documentNumbers_[*value] = wordNumberAt(text_, word.begin, word.letters, tolerant_);
    }
}

bool SectionGroups::read(std::size_t index) {
    if (groupEnd_ <= index) readGroup(index);
    if (groupEnd_ == text_.npos) return false;
    for (std::size_t value = 0; value < PageSetup::valueCount; ++value) {
        if (!readValue(value, index)) return false;
    }
    page_.landscape = first(PageSetup::valueCount, index) != nullptr;
    const bool portrait = first(PageSetup::valueCount + 1, index) != nullptr;
    if (page_.landscape || portrait) page_.turn(page_.landscape);
    return true;
}

void SectionGroups::readGroup(std::size_t begin) {
    groupEnd_ = text_.find(u'}', begin);
    if (groupEnd_ == text_.npos) return;
    for (RtfReader reader(text_, begin, groupEnd_, tolerant_); reader.nextWord();) {
        const ControlWord word = reader.word();
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (!word.letters.starts_with(words[i])) continue;
            found_[i].push_back({word.begin, twips(*numberTextAt(text_, word.begin + 1 + words[i].size()))});
        }
    }
}

// The first occurrence at or after the index; null when there is none.
const SectionGroups::Word* SectionGroups::first(std::size_t word, std::size_t begin) {
    std::deque<Word>& found = found_[word];
    while (!found.empty() && found.front().at < begin) found.pop_front();
    return found.empty() ? nullptr : &found.front();
}

bool SectionGroups::readValue(std::size_t value, std::size_t begin) {
    const Word* const given = first(value, begin);
    const auto& document = documentNumbers_[value];
    if (given == nullptr && !document) return true;
    const std::optional<std::int32_t> read = given != nullptr ? given->twips : rounded(number(*document));
    if (read) page_.values[value] = *read;
    return read.has_value();
}

}  // namespace velmor
