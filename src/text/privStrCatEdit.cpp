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
    reportingErrors([&] { eraseUnits(toIndex(position), toSize(count)); });
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
    if (psFind.empty()) return 0;
    return reportingErrors([&] {
        // Copies, for they may be part of what changes.
        return replaceAll(std::u16string(psFind), std::u16string(psReplace), first, plCount, pbBinaryCompare);
    });
}

std::int32_t privStrCat::replaceAll(const std::u16string& sought, const std::u16string& replacement, std::int32_t start,
                                    std::int32_t limit, bool binary) {
    const std::size_t shared = std::min(sought.size(), replacement.size());
    std::int32_t count = 0;
    while (start > 0) {
        const std::int32_t hit = Find(sought, start, binary);
        if (hit == 0 || toSize(hit) + sought.size() >= content_.size()) break;
        if (sought.size() < replacement.size()) {
            replaceUnits(toIndex(hit), sought.size(), replacement);
            ++count;
            if (limit >= 0 && count >= limit) break;
        } else {
            content_.replace(toIndex(hit), replacement.size(), replacement);
            eraseUnits(toIndex(hit) + shared, sought.size() - shared);
        }
        start = hit + static_cast<std::int32_t>(replacement.size());
    }
    return count;
}

void privStrCat::ModifyMidStr(std::int32_t plPosition, std::u16string_view psString) {
    const std::int64_t end = std::int64_t{plPosition} + static_cast<std::int64_t>(psString.size());
    if (checked(end) < Length()) {
        requireArgument(plPosition >= 1);
        reportingErrors([&] { content_.replace(toIndex(plPosition), psString.size(), psString); });
    } else if (plPosition > 0 && plPosition < Length()) {
        const std::size_t index = toIndex(plPosition);
        const std::size_t count = std::min(psString.size(), content_.size() - index);
        reportingErrors([&] { replaceUnits(index, count, psString); });
    }
}

// ---- Trimming

namespace {

std::u16string_view withoutBlanksBefore(std::u16string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(u' '), text.size()));
    return text;
}

std::u16string_view withoutBlanksBehind(std::u16string_view text) {
    return text.substr(0, text.find_last_not_of(u' ') + 1);
}

}  // namespace

std::u16string privStrCat::TrimStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksBehind(withoutBlanksBefore(contiguous()))); });
}

std::u16string privStrCat::TrimLeftStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksBefore(contiguous())); });
}

std::u16string privStrCat::TrimRightStr() const {
    return reportingErrors([&] { return std::u16string(withoutBlanksBehind(contiguous())); });
}

void privStrCat::ModifyTrimLeftStr(std::u16string_view psTrimCharacters) {
    reportingErrors([&] {
        const std::size_t kept = contiguous().find_first_not_of(psTrimCharacters);
        if (kept != std::u16string_view::npos) eraseUnits(0, kept);
    });
}

void privStrCat::ModifyTrimRightStr(std::u16string_view psTrimCharacters) {
    reportingErrors([&] {
        const std::size_t kept = contiguous().find_last_not_of(psTrimCharacters) + 1;  // 0 when there is none
        eraseUnits(kept, content_.size() - kept);
    });
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
    reportingErrors([&] {
        const std::u16string changed = map(part(plStart, count));
        SpareTail tail = tail_;
        if (count == Length()) tail.map(map);
        content_.replace(toIndex(plStart), toSize(count), changed);
        tail_ = std::move(tail);
    });
}

void privStrCat::ModifyUCaseStr(std::int32_t plStart, std::int32_t plLength) {
    modifyCase(plStart, plLength, upperCase);
}

void privStrCat::ModifyLCaseStr(std::int32_t plStart, std::int32_t plLength) {
    modifyCase(plStart, plLength, lowerCase);
}

}  // namespace velmor
