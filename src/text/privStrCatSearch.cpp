#include <algorithm>
#include <cstdint>

#include "text/BuilderErrors.h"
#include "text/Encoding.h"
#include "text/Escape.h"
#include "text/privStrCat.h"

namespace velmor {

namespace {

constexpr std::size_t notFound = std::u16string_view::npos;

std::int32_t toPosition(std::size_t index) noexcept {
    return index == notFound ? 0 : static_cast<std::int32_t>(index + 1);
}

}  // namespace

// A hit in the content, else one that begins there and continues in the spare tail.
std::size_t privStrCat::findFrom(std::u16string_view sought, std::size_t start, Comparison comparison) const {
    const std::size_t hit = findText(contiguous(), sought, start, comparison);
    if (hit != notFound) return hit;
    const std::size_t last = std::max(start, length_ - std::min(length_, sought.size() - 1));
    const std::u16string seam = bufferCopy(last, std::min(length_ - 1 + sought.size(), capacity_) - last);
    const std::size_t found = findText(seam, sought, 0, comparison);
    return found == notFound ? notFound : last + found;
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
    return toPosition(findTextReverse(contiguous().substr(0, toSize(start)), psFind, comparisonOf(pbBinaryCompare)));
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
    const std::u16string_view text = contiguous();
    const auto hit = std::find_if(text.begin() + plStart - 1, text.end(), isSought);
    return hit == text.end() ? 0 : static_cast<std::int32_t>(hit - text.begin()) + 1;
}

std::int32_t privStrCat::FindCount(std::u16string_view psFind, std::int32_t plStartPosition, std::int32_t plEndPosition,
                                   bool pbBinaryCompare, bool pbIsRTFtag) const {
    const std::int32_t end = plEndPosition == 0 ? Length() : plEndPosition;
    EscapeScan escapes;
    std::int32_t count = 0;
    std::int32_t hit = Find(psFind, plStartPosition, pbBinaryCompare);
    while (hit != 0 && hit <= end) {
        if (!pbIsRTFtag || !escapes.isEscaped(contiguous(), toIndex(hit))) ++count;
        hit = Find(psFind, hit + 1, pbBinaryCompare);
    }
    return count;
}

std::int32_t privStrCat::WordCount() const noexcept {
    if (BufferLength() == 0) return 0;
    const std::size_t units = length_ == 0 ? 1 : (length_ + 1) / 2;
    const auto bufferUnit = [&](std::size_t index) {  // U+0000 beyond the buffer: not a word character
        if (index < buffer_.size()) return buffer_[index];
        return index < capacity_ ? u' ' : u'\0';
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
    for (std::int32_t position = plGroupStart + 1; position <= limit; ++position) {
        const char16_t unit = unitAt(position);
        if ((unit != u'{' && unit != u'}') || unitAt(position - 1) == u'\\') continue;
        depth += unit == u'{' ? 1 : -1;
        if (depth == 0) {
            plGroupEnd = position;
            return;
        }
    }
}

void privStrCat::FindBraceGroupStart(std::int32_t plPosition, std::int32_t& plGroupStart) const noexcept {
    plGroupStart = 0;
    if (unitAt(plPosition) != u'}') return;
    std::size_t depth = 0;
    for (std::size_t index = toSize(plPosition); index-- > 0;) {
        const char16_t unit = buffer_[index];
        if (unit == u'}') ++depth;
        if (unit == u'{' && --depth == 0) {
            plGroupStart = toPosition(index);
            return;
        }
    }
}

}  // namespace velmor
