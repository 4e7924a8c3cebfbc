#include "text/privStrCat.h"

#include <algorithm>
#include <new>
#include <utility>

#include "text/BuilderErrors.h"

namespace velmor {

namespace {

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

void privStrCat::SurroundVal(const std::u16string& psPrepend, const std::u16string& psAppend) noexcept {
    Append(psAppend);
    Prepend(psPrepend);
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

std::u16string privStrCat::LCaseStr() const {
    return reportingErrors([&] { return lowerCase(contiguous()); });
}

std::u16string privStrCat::UCaseStr() const {
    return reportingErrors([&] { return upperCase(contiguous()); });
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

}  // namespace velmor
