#include "core/FinishedMarkers.h"

#include <algorithm>

#include "core/Markup.h"
#include "text/Compare.h"

namespace velmor {

namespace {

constexpr std::uint64_t kBase = 0x9E3779B97F4A7C15;

std::uint64_t power(std::uint64_t base, std::size_t exponent) noexcept {
    std::uint64_t result = 1;
    for (; exponent != 0; exponent >>= 1, base *= base) {
        if ((exponent & 1) != 0) result *= base;
    }
    return result;
}

char16_t folded(char16_t unit) noexcept {
    if (unit >= 0x80) return lowerUnit(unit);
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

bool endsInSeparator(std::u16string_view text, std::size_t closing) noexcept {
    return closing > 0 && text[closing - 1] == kElementSeparator;
}

bool hasNameWithSeparator(std::u16string_view text) noexcept {
    for (MarkerPlace place = findMarker(text, 0); place.position < text.size();
         place = findMarker(text, place.position + 1)) {
        if (!place.opening && endsInSeparator(text, place.position)) return true;
    }
    return false;
}

}  // namespace

std::uint64_t RollingHash::add(std::uint64_t hash, char16_t unit) noexcept {
    // One more than the unit, so that leading zeros count.
    return hash * kBase + folded(unit) + 1;
}

std::uint64_t RollingHash::of(std::u16string_view text) noexcept {
    std::uint64_t hash = 0;
    for (const char16_t unit : text) hash = add(hash, unit);
    return hash;
}

RollingHash::Mark RollingHash::advance(std::u16string_view text, std::size_t position) noexcept {
    for (; mark_.position < position; ++mark_.position) mark_.hash = add(mark_.hash, text[mark_.position]);
    return mark_;
}

std::uint64_t RollingHash::between(const Mark& start, const Mark& end) noexcept {
    return end.hash - start.hash * power(kBase, end.position - start.position);
}

void FinishedMarkers::scan(std::u16string_view text) {
    for (MarkerPlace place = findMarker(text, next_); place.position < text.size(); place = findMarker(text, next_)) {
        next_ = place.position + 1;
        if (place.opening) {
            const std::size_t name = place.position + kOpeningMarker.size();
            if (unclosed_.empty()) hash_.restart(name);
            unclosed_.push_back(hash_.advance(text, name));
        } else if (!unclosed_.empty()) {
            const RollingHash::Mark start = unclosed_.back();
            unclosed_.pop_back();
            names_.insert(RollingHash::between(start, hash_.advance(text, place.position)));
            if (start.position == place.position && !unclosed_.empty()) {
                names_.insert(RollingHash::between(unclosed_.back(), start));
            }
        }
    }
    // A marker that is not complete yet begins in the last units.
    const std::size_t incomplete = kClosingMarker.size() - 1;
    if (text.size() > incomplete) next_ = std::max(next_, text.size() - incomplete);
}

PairIndex::PairIndex(std::u16string_view text) {
    if (!hasNameWithSeparator(text)) return;
    RollingHash hash;
    std::vector<RollingHash::Mark> unclosed;
    for (MarkerPlace place = findMarker(text, 0); place.position < text.size();
         place = findMarker(text, place.position + 1)) {
        if (place.opening) {
            const std::size_t name = place.position + kOpeningMarker.size();
            if (unclosed.empty()) hash.restart(name);
            unclosed.push_back(hash.advance(text, name));
        } else if (!unclosed.empty()) {
            const RollingHash::Mark start = unclosed.back();
            unclosed.pop_back();
            const RollingHash::Mark end = hash.advance(text, place.position);
            if (!endsInSeparator(text, place.position)) continue;
            add(start, end);
            if (start.position == end.position && !unclosed.empty()) add(unclosed.back(), start);
        }
    }
}

void PairIndex::add(const RollingHash::Mark& start, const RollingHash::Mark& end) {
    std::size_t& last = lastPlace_[RollingHash::between(start, end)];
    last = std::max(last, start.position);
}

bool PairIndex::standsBehind(std::uint64_t nameHash, std::size_t position) const {
    const auto found = lastPlace_.find(nameHash);
    return found != lastPlace_.end() && found->second > position;
}

}  // namespace velmor
