#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

#include "rtf/pages/PageSetup.h"

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
    SectionGroups(std::u16string_view text, std::size_t begin, std::size_t end, bool tolerant);

    // Reads the group at the index; indices ascend. False when its brace is absent or a value is not a number;
    // then it describes nothing.
    bool read(std::size_t index);

    const PageSetup& page() const noexcept { return page_; }
    // The closing brace of the last group.
    std::size_t end() const noexcept { return groupEnd_; }

private:
    // The words of groups: those of PageSetup's values, then the two of the orientation.
    static constexpr std::array<std::u16string_view, PageSetup::valueCount + 2> words = {
        u"paperheight", u"paperwidth", u"marginl", u"marginr", u"margint", u"marginb", u"landscape", u"portrait"};

    struct Word {
        std::size_t at;
        std::optional<std::int32_t> twips;  // nothing when the text is not a number
    };

    void readDocument(std::size_t begin, std::size_t end);
    void readGroup(std::size_t begin);
    const Word* first(std::size_t word, std::size_t begin);
    bool readValue(std::size_t value, std::size_t begin);

    std::u16string_view text_;
    bool tolerant_;
    PageSetup page_;
    std::size_t groupEnd_ = 0;
    std::array<std::deque<Word>, words.size()> found_;  // up to the group's end
    std::array<std::optional<std::u16string_view>, PageSetup::valueCount> documentNumbers_;
};

}  // namespace velmor
