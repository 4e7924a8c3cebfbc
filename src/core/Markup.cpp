#include "core/Markup.h"

#include <cstring>
#include <utility>

namespace velmor {

namespace {

constexpr std::uint64_t eachUnit = 0x0001000100010001;
constexpr std::uint64_t topBits = 0x8000800080008000;

// Four units at once: not 0 when one of them is "<". Exact for the lowest such unit only.
std::uint64_t angleBits(const char16_t* units) noexcept {
    std::uint64_t word;
    std::memcpy(&word, units, sizeof word);
    word ^= eachUnit * u'<';
    return (word - eachUnit) & ~word & topBits;
}

bool isInAnyCase(char16_t unit, char16_t lower) noexcept {
    return (unit | 0x20) == lower;
}

bool isOpening(const char16_t* at, std::size_t left) noexcept {
    return left >= openingMarker.size() && isInAnyCase(at[1], u'k') && isInAnyCase(at[2], u'v') && at[3] == u':';
}

bool isClosing(const char16_t* at, std::size_t left) noexcept {
    return left >= closingMarker.size() && at[1] == u'/' && isInAnyCase(at[2], u'k') && isInAnyCase(at[3], u'v') &&
           at[4] == u'>';
}

}  // namespace

std::size_t findAngle(std::u16string_view text, std::size_t start) noexcept {
    const char16_t* const units = text.data();
    const std::size_t size = text.size();
    std::size_t at = start;
    while (at + 8 <= size && (angleBits(units + at) | angleBits(units + at + 4)) == 0) at += 8;
    while (at < size && units[at] != u'<') ++at;
    return at;
}

MarkerPlace findMarker(std::u16string_view text, std::size_t start) noexcept {
    for (std::size_t at = findAngle(text, start); at < text.size(); at = findAngle(text, at + 1)) {
        if (isOpening(text.data() + at, text.size() - at)) return {at, true};
        if (isClosing(text.data() + at, text.size() - at)) return {at, false};
    }
    return {};
}

std::size_t findOpeningMarker(std::u16string_view text, std::size_t start) noexcept {
    for (std::size_t at = findAngle(text, start); at < text.size(); at = findAngle(text, at + 1)) {
        if (isOpening(text.data() + at, text.size() - at)) return at;
    }
    return std::u16string_view::npos;
}

std::size_t endOfTag(std::u16string_view text, std::size_t start) noexcept {
    if (start >= text.size() || text[start] != u'<' || !isOpening(text.data() + start, text.size() - start)) {
        return text.npos;
    }
    std::size_t depth = 0;
    for (MarkerPlace place{start, true}; place.position < text.size(); place = findMarker(text, place.position + 1)) {
        depth += place.opening ? 1 : static_cast<std::size_t>(-1);
        if (depth == 0) return place.position + closingMarker.size();
    }
    return text.npos;
}

// The innermost unclosed marker is known; each one's `close` holds the index of the one around it
// until it gets its own.
std::vector<TagSpan> findMarkerPairs(std::u16string_view text) {
    constexpr std::uint32_t unclosed = TagSpan::unclosed;
    std::vector<TagSpan> pairs;
    std::uint32_t innermost = unclosed;
    for (MarkerPlace place = findMarker(text, 0); place.position < text.size();
         place = findMarker(text, place.position + 1)) {
        const auto position = static_cast<std::uint32_t>(place.position);
        if (place.opening) {
            pairs.push_back({position, innermost});
            innermost = static_cast<std::uint32_t>(pairs.size() - 1);
        } else if (innermost != unclosed) {
            innermost = std::exchange(pairs[innermost].close, position);
        }
    }
    while (innermost != unclosed) innermost = std::exchange(pairs[innermost].close, unclosed);
    return pairs;
}

TopLevelTags findTopLevelTags(std::u16string_view text) {
    TopLevelTags found{findMarkerPairs(text)};
    std::size_t kept = 0;
    std::size_t resume = 0;
    bool inTag = false;  // what lies before `resume` belongs to a tag
    for (const TagSpan pair : found.tags) {
        if (pair.open >= resume) {
            inTag = pair.complete();
            // The same step in both cases, the closing marker's length.
            resume = (inTag ? pair.close : pair.open) + closingMarker.size();
            if (inTag) found.tags[kept++] = pair;
        }
        if (!inTag && found.firstStray == TopLevelTags::noTag) found.firstStray = pair.open;
    }
    found.tags.resize(kept);
    return found;
}

}  // namespace velmor
