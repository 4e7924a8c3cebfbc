#include "text/privStrCat.h"

#include <algorithm>
#include <new>

#include "text/Encoding.h"
#include "text/Error.h"
#include "text/Escape.h"

namespace velmor {

namespace {

constexpr std::size_t notFound = std::u16string_view::npos;

std::int32_t toPosition(std::size_t index) noexcept {
    return index == notFound ? 0 : static_cast<std::int32_t>(index + 1);
}

[[noreturn]] void raiseBuilderError(std::int32_t number, const char16_t* description) {
    throw Error(number, u"VelmorStrCat", description);
}

void requireArgument(bool valid) {
    if (!valid) raiseBuilderError(5, u"Invalid procedure call or argument");
}

std::int32_t checked(std::int64_t value) {
    if (!std::in_range<std::int32_t>(value)) raiseBuilderError(6, u"Overflow");
    return static_cast<std::int32_t>(value);
}

std::int32_t sum(std::int32_t a, std::int32_t b) {
    return checked(std::int64_t{a} + b);
}
std::int32_t difference(std::int32_t a, std::int32_t b) {
    return checked(std::int64_t{a} - b);
}

// Of values known not to be negative, and positions known not to be below 1.
std::size_t toSize(std::int32_t value) noexcept {
    return static_cast<std::size_t>(value);
}
std::size_t toIndex(std::int32_t position) noexcept {
    return static_cast<std::size_t>(position) - 1;
}

constexpr Comparison comparisonOf(bool binary) noexcept {
    return binary ? Comparison::binary : Comparison::text;
}

// The error that members raise when memory runs out.
template <typename Step>
auto reportingErrors(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        raiseBuilderError(7, u"Out of memory");
    }
}

// Members that never raise leave the builder as it was when memory runs out.
template <typename Step>
void unlessMemoryRunsOut(Step step) noexcept {
    try {
        step();
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

// ---- The buffer

std::size_t privStrCat::grown(std::size_t capacity, std::size_t added) const {
    const std::size_t blanks = std::max(added, static_cast<std::size_t>(growthRate_));
    if (added > maximumLength || capacity + blanks > maximumLength) throw std::bad_alloc();
    return capacity + blanks;
}

// The content moves to the left. What the buffer had at its old end stays there.
void privStrCat::eraseUnits(std::size_t index, std::size_t count) noexcept {
    if (count == 0) return;
    const auto place = buffer_.begin() + static_cast<std::ptrdiff_t>(index);
    const auto end = buffer_.begin() + static_cast<std::ptrdiff_t>(length_);
    std::copy(place + static_cast<std::ptrdiff_t>(count), end, place);
    length_ -= count;
}

// Removes, then inserts: what the tail keeps of the one, it loses to the other. All or nothing.
void privStrCat::replaceUnits(std::size_t index, std::size_t count, std::u16string_view text) {
    const std::size_t kept = length_ - count;
    const std::size_t capacity = text.empty() ? capacity_ : capacityFor(capacity_, kept, text.size());
    const std::u16string inserted(text);  // it may be part of what moves
    buffer_.reserve(kept + inserted.size());
    eraseUnits(index, count);
    buffer_.erase(kept, inserted.size());
    buffer_.insert(index, inserted);
    length_ = kept + inserted.size();
    capacity_ = capacity;
}

void privStrCat::release() noexcept {
    buffer_ = {};
    length_ = capacity_ = 0;
}

std::u16string privStrCat::bufferCopy(std::size_t index, std::size_t count) const {
    std::u16string text = buffer_.substr(index, count);
    text.resize(count, u' ');
    return text;
}

std::u16string privStrCat::part(std::int32_t start, std::int32_t count) const {
    return reportingErrors([&] { return bufferCopy(toIndex(start), toSize(count)); });
}

void privStrCat::exchangeUnits(char16_t before, char16_t after) noexcept {
    std::replace(buffer_.begin(), buffer_.begin() + static_cast<std::ptrdiff_t>(length_), before, after);
}

// ---- Building

void privStrCat::Append(std::u16string_view psString) noexcept {
    unlessMemoryRunsOut([&] { add(psString); });
}

void privStrCat::AppendVal(std::u16string psString) noexcept {
    if (length_ != 0) return Append(psString);
    unlessMemoryRunsOut([&] {
        const std::size_t added = psString.size();
        const std::size_t capacity = capacityFor(capacity_, 0, added);
        if (buffer_.size() > added) psString.append(buffer_, added);
        buffer_ = std::move(psString);
        length_ = added;
        capacity_ = capacity;
    });
}

void privStrCat::Prepend(std::u16string_view psString) noexcept {
    unlessMemoryRunsOut([&] { replaceUnits(0, 0, psString); });
}

void privStrCat::Surround(std::u16string_view psPrepend, std::u16string_view psAppend) noexcept {
    unlessMemoryRunsOut([&] {
        const std::u16string prepended(psPrepend);  // it may be part of what moves
        Append(psAppend);
        Prepend(prepended);
    });
}

void privStrCat::ReturnStr(std::u16string& psReturn) const noexcept {
    unlessMemoryRunsOut([&] { psReturn = contiguous(); });
}

std::u16string privStrCat::ReturnVal() const noexcept {
    std::u16string text;
    ReturnStr(text);
    return text;
}

void privStrCat::DumpStr(std::u16string& psReturn) noexcept {
    unlessMemoryRunsOut([&] {
        if (isLarge()) {
            buffer_.resize(length_);
            psReturn = std::move(buffer_);
            release();
        } else {
            psReturn = contiguous();
            length_ = 0;
        }
    });
}

std::u16string privStrCat::DumpVal() noexcept {
    std::u16string text;
    DumpStr(text);
    return text;
}

void privStrCat::Reset() noexcept {
    if (isLarge()) release();
    length_ = 0;
}

void privStrCat::GrowthRate(std::int32_t plGrowthRate) noexcept {
    growthRate_ = std::clamp(plGrowthRate, 255, 16392);
}

// ---- Searching

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

// ---- Taking parts

std::u16string privStrCat::SubString(std::int32_t plStart, std::int32_t plLength) const {
    if (plStart > Length()) return {};
    const bool toTheEnd = plLength == 0 || sum(plStart, plLength) > Length() + 1;
    const std::int32_t count = toTheEnd ? sum(difference(Length(), plStart), 1) : plLength;
    requireArgument(plStart >= 1 && count >= 0);
    return part(plStart, count);
}

std::u16string privStrCat::LeftStr(std::int32_t plLength) const {
    return part(1, std::clamp(plLength, 0, Length()));
}

std::u16string privStrCat::RightStr(std::int32_t plLength) const {
    const std::int32_t count = std::clamp(plLength, 0, Length());
    return part(Length() - count + 1, count);
}

std::u16string privStrCat::LeftStrLessBy(std::int32_t plLength) const {
    if (plLength > Length()) return {};
    return part(1, std::min(difference(Length(), plLength), BufferLength()));
}

std::u16string privStrCat::inCase(std::u16string (*map)(std::u16string_view)) const {
    return reportingErrors([&] { return map(contiguous()); });
}

std::u16string privStrCat::trimmed(bool atStart, bool atEnd) const {
    std::u16string_view text = contiguous();
    if (atStart) text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    if (atEnd) text = text.substr(0, text.find_last_not_of(u' ') + 1);
    return reportingErrors([&] { return std::u16string(text); });
}

// How many characters of the range that MidStr and the case members share; 0 outside 1 <= plStart < Length().
std::int32_t privStrCat::rangeCount(std::int32_t plStart, std::int32_t plLength) const {
    if (plStart < 1 || plStart >= Length()) return 0;
    const bool toTheEnd = plLength == -1 || difference(sum(plStart, plLength), 1) > Length();
    const std::int32_t count = toTheEnd ? Length() - plStart + 1 : plLength;
    requireArgument(count >= 0);
    return count;
}

std::u16string privStrCat::MidStr(std::int32_t plStart, std::int32_t plLength) const {
    const std::int32_t count = rangeCount(plStart, plLength);
    if (count == 0) return {};
    return part(plStart, count == Length() ? BufferLength() : count);
}

// ---- Editing

std::int32_t privStrCat::Insert(std::u16string_view psString, std::int32_t plPosition) {
    if (plPosition < 2) {
        Prepend(psString);
    } else if (plPosition > Length()) {
        Append(psString);
    } else {
        reportingErrors([&] { replaceUnits(toIndex(plPosition), 0, psString); });
    }
    return Length();
}

std::int32_t privStrCat::InsertTagResult(ResultSource& poTag, std::int32_t plPosition) {
    if (plPosition < 2 || plPosition > Length()) return Insert(poTag.result(), plPosition);
    const std::size_t width = toSize(poTag.resultBuilder()->Length());
    std::u16string result = poTag.result();
    if (result.size() > width) result.resize(width);
    if (result.size() < width && plPosition <= Length()) {  // evaluating may have changed this text
        // The rest of the width keeps what was there when the content moved right.
        result += bufferCopy(toIndex(plPosition), width).substr(result.size());
    }
    return Insert(result, plPosition);
}

std::int32_t privStrCat::Remove(std::int32_t plPosition, std::int32_t plLength) {
    const std::int32_t position = std::max(plPosition, 1);
    if (position > Length()) return 0;
    const bool toTheEnd = sum(position, plLength) > Length() + 1;
    const std::int32_t count = std::max(toTheEnd ? Length() - position + 1 : plLength, 0);
    eraseUnits(toIndex(position), toSize(count));
    return count;
}

std::int32_t privStrCat::RemoveFromTo(std::int32_t plPositionFrom, std::int32_t plPositionTo) {
    const std::int32_t to = plPositionTo < 0 ? Length() : plPositionTo;
    if (plPositionFrom > to) return 0;
    return Remove(plPositionFrom, sum(difference(to, plPositionFrom), 1));
}

std::int32_t privStrCat::Replace(std::u16string_view psFind, std::u16string_view psReplace, std::int32_t& plStart,
                                 std::int32_t& plCount, bool pbBinaryCompare) {
    const std::int32_t first = plStart;
    plStart = 0;
    if (psFind.empty() || first < 1 || first > Length()) return 0;
    return reportingErrors(
        [&] { return replaceAll(psFind, psReplace, toIndex(first), plCount, comparisonOf(pbBinaryCompare)); });
}

std::int32_t privStrCat::replaceAll(std::u16string_view sought, std::u16string_view replacement, std::size_t from,
                                    std::int32_t limit, Comparison comparison) {
    const std::u16string_view text = contiguous();
    const bool grows = replacement.size() > sought.size();
    std::u16string swept(text.substr(0, from));
    std::size_t capacity = capacity_;
    std::int32_t hits = 0;
    while (!grows || limit < 0 || hits == 0 || hits < limit) {
        const std::size_t hit = findText(text, sought, from, comparison);
        if (hit == text.npos || hit + sought.size() + 1 >= text.size()) break;
        swept.append(text, from, hit - from);
        from = hit + sought.size();
        if (grows) capacity = capacityFor(capacity, swept.size() + text.size() - from, replacement.size());
        swept.append(replacement);
        ++hits;
    }
    takeSwept(swept.append(text, from), grows ? 0 : sought.size() - replacement.size(), hits);
    capacity_ = capacity;
    return grows ? hits : 0;
}

// Leaves the tail as one replacement after the other would. A longer text takes its room from the tail. With a shorter
// one the content moves left by `removed` units, and the tail keeps the content's last units: the same each time, for
// no hit reaches the end.
void privStrCat::takeSwept(std::u16string& swept, std::size_t removed, std::int32_t hits) {
    const std::size_t length = swept.size();
    for (std::int32_t i = 0; i < hits; ++i) swept.append(contiguous().substr(length_ - removed));
    swept.append(buffer_, std::min(std::max(length_, length), buffer_.size()));
    buffer_ = std::move(swept);
    length_ = length;
}

void privStrCat::ModifyMidStr(std::int32_t plPosition, std::u16string_view psString) {
    const std::int64_t end = std::int64_t{plPosition} + static_cast<std::int64_t>(psString.size());
    if (checked(end) < Length()) {
        requireArgument(plPosition >= 1);
        buffer_.replace(toIndex(plPosition), psString.size(), psString);
    } else if (plPosition > 0 && plPosition < Length()) {
        const std::size_t index = toIndex(plPosition);
        const std::size_t count = std::min(psString.size(), length_ - index);
        reportingErrors([&] { replaceUnits(index, count, psString); });
    }
}

// ---- Trimming

void privStrCat::ModifyTrimLeftStr(std::u16string_view psTrimCharacters) {
    const std::size_t kept = contiguous().find_first_not_of(psTrimCharacters);
    if (kept != std::u16string_view::npos) eraseUnits(0, kept);
}

void privStrCat::ModifyTrimRightStr(std::u16string_view psTrimCharacters) {
    const std::size_t kept = contiguous().find_last_not_of(psTrimCharacters) + 1;  // 0 when there is none
    eraseUnits(kept, length_ - kept);
}

void privStrCat::ModifyTrimStr(std::u16string_view psTrimCharacters) {
    reportingErrors([&] {
        const std::u16string characters(psTrimCharacters);  // they may be part of what moves
        ModifyTrimLeftStr(characters);
        ModifyTrimRightStr(characters);
    });
}

// ---- Case

void privStrCat::modifyCase(std::int32_t plStart, std::int32_t plLength, std::u16string (*map)(std::u16string_view)) {
    const std::int32_t count = rangeCount(plStart, plLength);
    if (count == 0) return;
    const std::size_t index = toIndex(plStart);
    const std::size_t size = count == Length() ? buffer_.size() : toSize(count);
    reportingErrors([&] { buffer_.replace(index, size, map(std::u16string_view(buffer_).substr(index, size))); });
}

}  // namespace velmor
