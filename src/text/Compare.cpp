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
    if (left.size() != right.size()) return false;
    if (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(char16_t)) == 0) return true;
    return std::equal(left.begin(), left.end(), right.begin(),
                      [](char16_t a, char16_t b) { return a == b || foldUnit(a) == foldUnit(b); });
}

std::size_t hashIgnoringCase(std::u16string_view text) noexcept {
    std::uint64_t hash = 0;
    for (const char16_t unit : text) hash = (hash ^ foldUnit(unit)) * 0x9E3779B97F4A7C15;
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

}  // namespace velmor
