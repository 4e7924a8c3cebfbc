#include <algorithm>
#include <cstdint>

#include "text/BuilderErrors.h"
#include "text/Encoding.h"
#include "text/Escape.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

constexpr std::size_t notFound = std::u16string_view::npos;

Comparison comparisonOf(bool binary) noexcept {
    return binary ? Comparison::binary : Comparison::text;
}

std::int32_t toPosition(std::size_t index) noexcept {
    return index == notFound ? 0 : static_cast<std::int32_t>(index + 1);
}

}  // namespace

// The first hit that begins in [start, end), read across the seams of the content's parts and the
// spare tail. Copies twice the sought text's length at the most.
std::size_t privStrCat::findAcross(std::u16string_view sought, std::size_t start, std::size_t end,
                                   Comparison comparison) const {
    if (start >= end) return notFound;
    const std::size_t reach = std::min(end - 1 + sought.size(), capacity_);
    const std::u16string seam = bufferCopy(start, reach - start);
    const std::size_t hit = findText(seam, sought, 0, comparison);
    return hit == notFound ? notFound : start + hit;
}

std::size_t privStrCat::findFrom(std::u16string_view sought, std::size_t start, Comparison comparison) const {
    const std::size_t overlap = sought.size() - 1;
    const std::u16string_view first = content_.first(), second = content_.second();
    const std::size_t split = first.size();
    if (start < split) {
        const std::size_t hit = findText(first, sought, start, comparison);
        if (hit != notFound) return hit;
        const std::size_t seam =
            findAcross(sought, std::max(start, split - std::min(split, overlap)), split, comparison);
        if (seam != notFound) return seam;
        start = split;
    }
    const std::size_t hit = findText(second, sought, start - split, comparison);
    if (hit != notFound) return split + hit;
    const std::size_t length = content_.size();
    return findAcross(sought, std::max(start, length - std::min(length, overlap)), length, comparison);
}

std::int32_t privStrCat::Find(std::u16string_view psFind, std::int32_t plStart, bool pbBinaryCompare) const {
    if (plStart > Length()) return 0;
    requireArgument(plStart >= 1);
    if (psFind.empty()) return plStart;
    if (psFind.size() > capacity_) return 0;
    return reportingErrors(
        [&] { return toPosition(findFrom(psFind, toIndex(plStart), comparisonOf(pbBinaryCompare))); });
}

std::int32_t privStrCat::FindReverse(std::u16string_view psFind, std::int32_t plStart, bool pbBinaryCompare) const {
    const std::int32_t start = plStart == -1 ? Length() : std::min(plStart, Length());
    if (start < 1) return 0;
    if (psFind.empty()) return start;
    const Comparison comparison = comparisonOf(pbBinaryCompare);
    const std::size_t overlap = psFind.size() - 1;
    const auto [first, second] = content_.range(0, toSize(start));
    const std::size_t split = first.size();
    std::size_t hit = findTextReverse(second, psFind, comparison);
    if (hit != notFound) return toPosition(split + hit);
    const std::size_t seamStart = split - std::min(split, overlap);
    const std::size_t seamEnd = split + std::min(second.size(), overlap);
    const std::u16string seam = reportingErrors([&] { return bufferCopy(seamStart, seamEnd - seamStart); });
    hit = findTextReverse(seam, psFind, comparison);
    if (hit != notFound) return toPosition(seamStart + hit);
    return toPosition(findTextReverse(first, psFind, comparison));
}

std::int32_t privStrCat::FindContains(std::u16string_view psContains, std::int32_t plStart,
                                      bool pbBinaryCompare) const {
    if (psContains.empty() || plStart > Length()) return 0;
    requireArgument(plStart >= 1);
    const auto isSought = [&](char16_t unit) {
        const auto equals = [&](char16_t other) {
            return unit == other || (!pbBinaryCompare && foldUnit(unit) == foldUnit(other));
        };
        return std::any_of(psContains.begin(), psContains.end(), equals);
    };
    std::int32_t position = plStart;
    for (const std::u16string_view part : content_.range(toIndex(plStart), content_.size() - toIndex(plStart))) {
        for (const char16_t unit : part) {
            if (isSought(unit)) return position;
            ++position;
        }
    }
    return 0;
}

std::int32_t privStrCat::FindCount(std::u16string_view psFind, std::int32_t plStartPosition, std::int32_t plEndPosition,
                                   bool pbBinaryCompare, bool pbIsRTFtag) const {
    const std::int32_t end = plEndPosition == 0 ? Length() : plEndPosition;
    const std::u16string sought = reportingErrors([&] { return std::u16string(psFind); });  // before the gap moves
    EscapeScan escapes(reportingErrors([&] { return pbIsRTFtag ? contiguous() : std::u16string_view(); }));
    std::int32_t count = 0;
    std::int32_t hit = Find(sought, plStartPosition, pbBinaryCompare);
    while (hit != 0 && hit <= end) {
        if (!pbIsRTFtag || !escapes.isEscaped(toIndex(hit))) ++count;
        hit = Find(sought, hit + 1, pbBinaryCompare);
    }
    return count;
}

std::int32_t privStrCat::WordCount() const noexcept {
    if (BufferLength() == 0) return 0;
    const std::size_t units = content_.size() == 0 ? 1 : (content_.size() + 1) / 2;
    std::u16string after;
    tail_.appendTo(after, std::min<std::size_t>(2, capacity_ - content_.size()));
    after.resize(2);  // U+0000 where nothing is: not a word character
    const auto bufferUnit = [&](std::size_t index) {
        return index < content_.size() ? content_[index] : after[index - content_.size()];
    };
    std::int32_t words = 0;
    bool inWord = false;
    const auto take = [&](bool isWordCharacter) {
        words += isWordCharacter && !inWord;
        inWord = isWordCharacter;
    };
    for (std::size_t unit = 0; unit < units; ++unit) {
        take((bufferUnit(2 * unit) & 0xFF) > 32);
        const char16_t second = bufferUnit(2 * unit + 1);
        take(second >= 0x21 && second < 0x8000);
    }
    return words;
}

std::int32_t privStrCat::Ascii(std::int32_t plPosition) const {
    requireArgument(plPosition >= 1 && plPosition <= Length());
    return ansiCode(unitAt(plPosition));
}

void privStrCat::FindBraceGroupEnd(std::int32_t plStart, std::u16string_view psFind, std::int32_t plLimit,
                                   std::int32_t& plGroupStart, std::int32_t& plGroupEnd) const {
    plGroupEnd = 0;
    plGroupStart = Find(psFind, plStart, false);
    if (plGroupStart == 0) return;
    const std::int32_t limit = std::clamp(plLimit == 0 ? Length() : plLimit, plGroupStart, Length());
    std::int32_t depth = 1;
    std::int32_t position = plGroupStart;
    char16_t before = unitAt(position);
    for (const std::u16string_view part : content_.range(toSize(position), toSize(limit - position))) {
        for (const char16_t unit : part) {
            ++position;
            const bool counts = before != u'\\';
            before = unit;
            if (counts && unit == u'{') ++depth;
            if (counts && unit == u'}' && --depth == 0) {
                plGroupEnd = position;
                return;
            }
        }
    }
}

void privStrCat::ScanBraceGroupEnd(std::int32_t plStart, std::u16string_view psFind, std::int32_t plLimit,
                                   std::int32_t& plGroupStart, std::int32_t& plGroupEnd) const {
    FindBraceGroupEnd(plStart, psFind, plLimit, plGroupStart, plGroupEnd);
}

void privStrCat::FindBraceGroupStart(std::int32_t plPosition, std::int32_t& plGroupStart) const noexcept {
    plGroupStart = 0;
    if (unitAt(plPosition) != u'}') return;
    std::size_t depth = 0;
    for (std::size_t index = toSize(plPosition); index-- > 0;) {
        const char16_t unit = content_[index];
        if (unit == u'}') ++depth;
        if (unit == u'{' && --depth == 0) {
            plGroupStart = toPosition(index);
            return;
        }
    }
}

}  // namespace velmor
