#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "rtf/pages/PageSetup.h"

namespace velmor {

// Finds a word in the groups of a text, whose begins and ends ascend. Groups without a closing brace extend
// into the next ones; no text is read twice.
class GroupWord {
public:
    explicit GroupWord(std::u16string_view word) noexcept : word_(word) {}

    // The first place of the word in [begin, end); `nowhere` without one.
    std::size_t find(std::u16string_view text, std::size_t begin, std::size_t end);

    static constexpr std::size_t nowhere = std::u16string_view::npos;

private:
    std::u16string_view word_;
    std::size_t next_ = 0;
    bool isFound_ = false;  // at next_; else no group so far contains it before next_
};

// The pages that the section marker groups of one document describe. A value that a group does not give is the
// document's, or, if absent there, that of the previous group.
class SectionGroups {
public:
    static constexpr std::u16string_view opening = u"{\\*\\korvanesection";
    // The name of a done group; it is written over the group's name at `nameOffset`.
    static constexpr std::u16string_view doneName = u"korvanecmplete";
    static constexpr std::size_t nameOffset = 4;

    // The document is [begin, end) of the text; `page` has the defaults.
    SectionGroups(std::u16string_view text, std::size_t begin, std::size_t end, const PageSetup& page, bool tolerant);

    // Reads the group at the index; indices ascend. False when its brace is absent or a value is not a number;
    // then it describes nothing.
    bool read(std::size_t index);

    const PageSetup& page() const noexcept { return page_; }
    // The closing brace of the last group.
    std::size_t end() const noexcept { return groupEnd_; }

private:
    // A value of the page that groups give.
    class Value {
    public:
        explicit Value(std::u16string_view word) noexcept : word_(word), length_(word.size()) {}

        bool isGiven(std::u16string_view text, std::size_t begin, std::size_t end);
        // Of the last requested group; nothing when it is not a number.
        std::optional<std::int32_t> number() const noexcept { return number_; }

    private:
        GroupWord word_;
        std::size_t length_;
        std::size_t readAt_ = GroupWord::nowhere;
        std::optional<std::int32_t> number_;
    };

    bool readValue(std::size_t value, std::size_t begin);
    const std::optional<std::u16string_view>& documentNumber(std::size_t value);
    void findDocumentWords();

    std::u16string_view text_;
    std::size_t begin_;
    std::size_t end_;
    PageSetup page_;
    bool tolerant_;
    std::size_t groupEnd_ = 0;
    std::vector<Value> values_;
    GroupWord landscape_{u"\\landscape"}, portrait_{u"\\portrait"};
    bool documentRead_ = false;
    std::array<std::optional<std::u16string_view>, PageSetup::valueCount> documentNumbers_;
};

}  // namespace velmor
