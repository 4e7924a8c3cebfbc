#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace velmor {

// The markup of tags. Markers match without regard to case.
inline constexpr std::u16string_view openingMarker = u"<KV:";
inline constexpr std::u16string_view closingMarker = u"</KV>";
inline constexpr char16_t elementSeparator = u':';
inline constexpr char16_t handlerSeparator = u'>';

// The elements of a tag's name, from 1.
inline constexpr std::int32_t handlerElement = 1;
inline constexpr std::int32_t commandElement = 2;
inline constexpr std::int32_t firstParameter = 3;

// Where a marker begins (0-based), or npos when there is none.
struct MarkerPlace {
    std::size_t position = std::u16string_view::npos;
    bool opening = false;
};

// The first "<" at or after `start`; the text's size when there is none.
std::size_t findAngle(std::u16string_view text, std::size_t start) noexcept;

// The first marker at or after `start`.
MarkerPlace findMarker(std::u16string_view text, std::size_t start) noexcept;
std::size_t findOpeningMarker(std::u16string_view text, std::size_t start) noexcept;

// A complete pair of markers: an opening marker and the closing one that belongs to it, which is
// the first that more closing than opening markers lead up to. 0-based places of both markers.
struct TagSpan {
    static constexpr std::uint32_t unclosed = 0xFFFFFFFF;

    std::uint32_t open = 0;
    std::uint32_t close = unclosed;

    bool complete() const noexcept { return close != unclosed; }
    std::size_t end() const noexcept { return close + closingMarker.size(); }
    // The text with the markers, and the text between them.
    std::u16string_view whole(std::u16string_view text) const noexcept { return text.substr(open, end() - open); }
    std::u16string_view inner(std::u16string_view text) const noexcept {
        const std::size_t begin = open + openingMarker.size();
        return text.substr(begin, close - begin);
    }
    bool operator==(const TagSpan&) const = default;
};

// Every opening marker of the text in order, each with its closing marker if there is one. One
// pass with a stack: linear for every input. Texts of up to 2^32 - 2 units.
std::vector<TagSpan> findMarkerPairs(std::u16string_view text);

// The end of the complete tag that begins at `start`; npos when none begins there.
std::size_t endOfTag(std::u16string_view text, std::size_t start) noexcept;

struct TopLevelTags {
    static constexpr std::uint32_t noTag = 0xFFFFFFFF;

    std::vector<TagSpan> tags;
    // The first opening marker that is in none of the tags: one that is never closed, or was passed
    // over.
    std::uint32_t firstStray = noTag;
};

// The top-level tags: what a search from left to right meets that goes on after each tag found.
// After an opening marker that is never closed the search goes on 5 units after that marker's
// start, so a marker that follows it at once is passed over (and with it the tag that begins
// there). Linear for every input.
TopLevelTags findTopLevelTags(std::u16string_view text);

}  // namespace velmor
