#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmor {

// The page of a section in twips, in the order in which stages write the values.
struct PageSetup {
    enum Value : std::size_t { width, height, left, right, top, bottom };
    static constexpr std::size_t valueCount = 6;
    using Words = std::array<std::u16string_view, valueCount>;

    // The words for a section, and for a whole document.
    static constexpr Words sectionWords = {u"pgwsxn", u"pghsxn", u"marglsxn", u"margrsxn", u"margtsxn", u"margbsxn"};
    static constexpr Words documentWords = {u"paperw", u"paperh", u"margl", u"margr", u"margt", u"margb"};
    // The value that a word with these letters gives. Further letters may follow the word for a section.
    static std::optional<std::size_t> sectionValue(std::u16string_view letters) noexcept;
    static std::optional<std::size_t> documentValue(std::u16string_view letters) noexcept;

    // RTF's default page.
    static constexpr std::array<std::int32_t, valueCount> defaults = {12240, 15840, 1800, 1800, 1440, 1440};

    std::array<std::int32_t, valueCount> values{};
    bool landscape = false;

    bool operator==(const PageSetup&) const = default;

    // Exchanges height and width if they contradict the orientation.
    void turn(bool toLandscape) noexcept;

    // The orientation, if it is landscape, and the six values.
    std::u16string words() const;

    // The values that differ from the other's.
    std::u16string wordsUnlike(const PageSetup& other) const;

private:
    std::u16string word(std::size_t value) const;
};

// The text between the index and the next unit that ends a word's number, without white space around it; nothing
// when no such unit follows.
std::optional<std::u16string_view> numberTextAt(std::u16string_view text, std::size_t index) noexcept;

// The number of the word at the index, as numberTextAt. Tolerant: as readers do, so that text may follow it directly;
// nothing when the word has no number.
std::optional<std::u16string_view> wordNumberAt(std::u16string_view text, std::size_t index, std::u16string_view word,
                                                bool tolerant) noexcept;

}  // namespace velmor
