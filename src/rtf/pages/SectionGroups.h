#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

#include "automation/NumberText.h"
#include "automation/Portable.h"
#include "automation/Variant.h"
#include "rtf/pages/PageSetup.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// The pages that the section marker groups of one document describe. A value that a group does not give is the
// document's, or, if absent there, that of the previous group; for the first group it is 0, or, tolerant, RTF's
// default. Linear, although a group without a closing brace extends into the next one.
class SectionGroups {
public:
    static constexpr std::u16string_view opening = u"{\\*\\korvanesection";
    // The name of a done group; it is written over the group's name at `nameOffset`.
    static constexpr std::u16string_view doneName = u"korvanecmplete";
    static constexpr std::size_t nameOffset = 4;

    // The document is [begin, end) of the text.
    SectionGroups(std::u16string_view text, std::size_t begin, std::size_t end, bool tolerant)
        : text_(text), tolerant_(tolerant) {
        if (tolerant) page_.values = PageSetup::defaults;
        // The first word for each value counts, even without a number.
        std::array<bool, PageSetup::valueCount> seen{};
        RtfReader reader(text, begin, end, tolerant);
        for (std::size_t left = seen.size(); left > 0 && reader.nextWord();) {
            const ControlWord word = reader.word();
            const auto value = PageSetup::documentValue(word.letters);
            if (!value || seen[*value]) continue;
            seen[*value] = true;
            --left;
            documentNumbers_[*value] = wordNumberAt(text, word.begin, word.letters, tolerant);
        }
    }

    // Reads the group at the index; indices ascend. False when its brace is absent or a value is not a number;
    // then it describes nothing.
    bool read(std::size_t index) {
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

    const PageSetup& page() const noexcept { return page_; }
    // The closing brace of the last group.
    std::size_t end() const noexcept { return groupEnd_; }

private:
    // With a point on every machine, so that a template gives the same document.
    static std::optional<double> number(std::u16string_view text) {
        const auto parsed = automation::portable::parseNumberText(text);
        if (!parsed) return std::nullopt;
        if (parsed->radixValue) return *parsed->radixValue;
        return automation::portable::doubleOf(*parsed);
    }

    static std::optional<std::int32_t> rounded(std::optional<double> value) {
        return value ? automation::portable::toLong(automation::Variant(*value)) : std::nullopt;
    }

    static std::optional<std::int32_t> twips(std::u16string_view text) {
        std::optional<double> value = number(text);
        if (value && *value <= 50) value = *value / 2.54 * 1440;
        return rounded(value);
    }

    // The words of groups: those of PageSetup's values, then the two of the orientation.
    static constexpr std::array<std::u16string_view, PageSetup::valueCount + 2> words = {
        u"paperwidth", u"paperheight", u"marginl", u"marginr", u"margint", u"marginb", u"landscape", u"portrait"};

    struct Word {
        std::size_t at;
        std::optional<std::int32_t> twips;  // nothing when the text is not a number
    };

    void readGroup(std::size_t begin) {
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
    const Word* first(std::size_t word, std::size_t begin) {
        std::deque<Word>& found = found_[word];
        while (!found.empty() && found.front().at < begin) found.pop_front();
        return found.empty() ? nullptr : &found.front();
    }

    bool readValue(std::size_t value, std::size_t begin) {
        const Word* const given = first(value, begin);
        const auto& document = documentNumbers_[value];
        if (given == nullptr && !document) return true;
        const std::optional<std::int32_t> read = given != nullptr ? given->twips : rounded(number(*document));
        if (read) page_.values[value] = *read;
        return read.has_value();
    }

    std::u16string_view text_;
    bool tolerant_;
    PageSetup page_;
    std::size_t groupEnd_ = 0;
    std::array<std::deque<Word>, words.size()> found_;  // up to the group's end
    std::array<std::optional<std::u16string_view>, PageSetup::valueCount> documentNumbers_;
};

}  // namespace velmor
