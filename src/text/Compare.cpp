#include "text/Compare.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace velmor {

namespace {

#include "text/CaseTable.inc"

char16_t mapUnit(const std::uint8_t (&pages)[256], char16_t unit) noexcept {
    return static_cast<char16_t>(unit + differences[pages[unit >> 8]][unit & 0xFF]);
}

// Four units as one number, folded: each lane of ASCII gets bit 0x20 when it is from A to Z.
std::uint64_t foldFour(const char16_t* text) noexcept {
    std::uint64_t units;
    std::memcpy(&units, text, sizeof units);
    constexpr std::uint64_t lanes = 0x0001000100010001;
    if ((units & 0xFF80 * lanes) == 0) {
        const std::uint64_t fromA = units + (0x80 - u'A') * lanes;       // bit 0x80: A or above
        const std::uint64_t aboveZ = units + (0x80 - u'Z' - 1) * lanes;  // bit 0x80: above Z
        return units | (fromA & ~aboveZ & 0x80 * lanes) >> 2;
    }
    char16_t folded[4];
    std::transform(text, text + 4, folded, foldUnit);
    std::memcpy(&units, folded, sizeof units);
    return units;
}

std::uint64_t mix(std::uint64_t hash, std::uint64_t units) noexcept {
    hash = (hash ^ units) * 0x9E3779B97F4A7C15;
    return hash ^ (hash >> 29);
}

template <typename Map>
std::u16string mapped(std::u16string_view text, Map map) {
    std::u16string result(text);
    std::transform(result.begin(), result.end(), result.begin(), map);
    return result;
}

}  // namespace

char16_t lowerUnit(char16_t unit) noexcept {
    return mapUnit(lowerPages, unit);
}

char16_t upperUnit(char16_t unit) noexcept {
    return mapUnit(upperPages, unit);
}

std::u16string lowerCase(std::u16string_view text) {
    return mapped(text, [](char16_t unit) { return lowerUnit(unit); });
}

std::u16string upperCase(std::u16string_view text) {
    return mapped(text, [](char16_t unit) { return upperUnit(unit); });
}

bool equalIgnoringCase(std::u16string_view left, std::u16string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char16_t a, char16_t b) { return a == b || foldUnit(a) == foldUnit(b); });
}

std::size_t hashIgnoringCase(std::u16string_view text) noexcept {
    std::uint64_t hash = text.size();
    if (text.size() < 4) {
        std::uint64_t units = 0;
        for (const char16_t unit : text) units = units << 16 | foldUnit(unit);
        hash = mix(hash, units);
    } else {
        const char16_t* const last = text.data() + text.size() - 4;
        for (const char16_t* at = text.data(); at < last; at += 4) hash = mix(hash, foldFour(at));
        hash = mix(hash, foldFour(last));  // may take units once more
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

}  // namespace velmor
