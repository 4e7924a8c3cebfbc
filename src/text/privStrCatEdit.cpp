#include <algorithm>
#include <utility>

#include "text/BuilderErrors.h"
#include "text/privStrCat.h"

namespace velmor {

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

namespace {

std::u16string_view withoutBlanksBefore(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    return text;
}

std::u16string_view withoutBlanksAfter(std::u16string_view text) {
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

}  // namespace

std::u16string privStrCat::TrimStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksAfter(withoutBlanksBefore(contiguous()))); });
}

std::u16string privStrCat::TrimLeftStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksBefore(contiguous())); });
}

std::u16string privStrCat::TrimRightStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksAfter(contiguous())); });
}

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
