#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "text/Compare.h"

namespace velmor {

class privStrCat;

// What privStrCat::InsertTagResult reads of a tag. The builder's length and the text must agree.
class ResultSource {
public:
    virtual ~ResultSource() = default;
    virtual std::shared_ptr<const privStrCat> resultBuilder() = 0;  // evaluates first if need be
    virtual std::u16string result() = 0;
};

// The string builder in which every long text is assembled and edited in place.
//
// It behaves as one buffer of UTF-16 units: the content is its first Length() units, the rest of
// BufferLength() is the spare tail. New space is blank; space that content has left keeps its
// characters. Members that read the tail say so. The buffer grows by the growth rate, or by the added
// length if that is more, and shrinks only in Reset and the Dumps.
//
// Positions are 1-based units; 0 means "not found". Unless a member says otherwise it raises
// Error 5 for a position below 1 or a negative count, Error 6 when a sum of positions leaves
// 32 bits (so a length of 2147483647 does not mean "to the end"), and Error 7 when memory or the
// limit of 2^30 - 1 units is exhausted; the builder is then unchanged. Arguments may be part of the
// builder itself.
//
// Cost: appending is amortised O(1), a search or Replace linear. Any other edit costs what follows its place, so many
// edits of one text belong in one sweep (rtf/edit/TextEdits.h).
class privStrCat {
public:
    static constexpr std::size_t maximumLength = (std::size_t{1} << 30) - 1;

    privStrCat() noexcept = default;
    privStrCat(const privStrCat& other) = default;
    privStrCat(privStrCat&& other) noexcept { swap(other); }
    privStrCat& operator=(privStrCat other) noexcept {
        swap(other);
        return *this;
    }
    ~privStrCat() = default;
    void swap(privStrCat& other) noexcept {
        std::swap(buffer_, other.buffer_);
        std::swap(length_, other.length_);
        std::swap(capacity_, other.capacity_);
        std::swap(growthRate_, other.growthRate_);
    }

    // ---- Building. No member up to DumpVal raises; without memory it does nothing.

    void Append(std::u16string_view psString) noexcept;
    // Takes the text over, without a copy, when the content is empty: AppendVal(std::move(text)).
    void AppendVal(std::u16string psString) noexcept;
    void Prepend(std::u16string_view psString) noexcept;
    void PrependVal(std::u16string psString) noexcept { Prepend(psString); }
    // Appends first, then prepends.
    void Surround(std::u16string_view psPrepend, std::u16string_view psAppend) noexcept;
    void SurroundVal(const std::u16string& psPrepend, const std::u16string& psAppend) noexcept {
        Surround(psPrepend, psAppend);
    }

    void ReturnStr(std::u16string& psReturn) const noexcept;
    std::u16string ReturnVal() const noexcept;
    // The content, then as Reset. A content whose buffer is released is moved out, not copied.
    void DumpStr(std::u16string& psReturn) noexcept;
    std::u16string DumpVal() noexcept;
    // Empties the content. A buffer of more than 5000 bytes (2500 units) is released; a smaller one
    // is kept, and the content becomes part of the spare tail.
    void Reset() noexcept;

    std::int32_t GrowthRate() const noexcept { return growthRate_; }
    // Clamped to 255..16392.
    void GrowthRate(std::int32_t plGrowthRate) noexcept;
    std::int32_t BufferLength() const noexcept { return static_cast<std::int32_t>(capacity_); }
    std::int32_t Length() const noexcept { return static_cast<std::int32_t>(length_); }

    // ---- Searching.

    // Position of the first psFind at or after plStart; 0 if absent or if plStart is beyond the
    // content. A hit may begin in the content and extend into the spare tail. An empty psFind is found
    // at plStart.
    std::int32_t Find(std::u16string_view psFind, std::int32_t plStart = 1, bool pbBinaryCompare = true) const;
    // Position of the last psFind that lies wholly within the first plStart units of the content;
    // -1, or any position beyond the content, means all of it. 0 if absent or for any other plStart
    // below 1. An empty psFind is found at plStart.
    std::int32_t FindReverse(std::u16string_view psFind, std::int32_t plStart = -1, bool pbBinaryCompare = true) const;
    // Position of the first unit at or after plStart that occurs in psContains. Costs the distance.
    std::int32_t FindContains(std::u16string_view psContains, std::int32_t plStart = 1,
                              bool pbBinaryCompare = true) const;
    // Number of hits that begin in plStartPosition..plEndPosition (0: the end), overlapping ones
    // included. With pbIsRTFtag, a hit that follows an odd run of backslashes is not counted.
    std::int32_t FindCount(std::u16string_view psFind, std::int32_t plStartPosition = 1, std::int32_t plEndPosition = 0,
                           bool pbBinaryCompare = true, bool pbIsRTFtag = false) const;
    // Words are runs of characters above the blank, as far as two units read as one 32-bit number
    // tell: the low byte counts in the first, 0x21..0x7FFF in the second. An odd length takes one
    // unit of the spare tail in; an empty content whose buffer was kept, two.
    std::int32_t WordCount() const noexcept;
    // The ANSI code of the unit at plPosition. Raises Error 5 anywhere outside the content.
    std::int32_t Ascii(std::int32_t plPosition) const;

    // plGroupStart: the first psFind at or after plStart, without regard to case; 0 if absent.
    // plGroupEnd: the brace that closes the group which begins there; 0 if it is not at or before
    // plLimit (0: the end). A brace that directly follows a backslash does not count.
    void FindBraceGroupEnd(std::int32_t plStart, std::u16string_view psFind, std::int32_t plLimit,
                           std::int32_t& plGroupStart, std::int32_t& plGroupEnd) const;
    void ScanBraceGroupEnd(std::int32_t plStart, std::u16string_view psFind, std::int32_t plLimit,
                           std::int32_t& plGroupStart, std::int32_t& plGroupEnd) const {
        FindBraceGroupEnd(plStart, psFind, plLimit, plGroupStart, plGroupEnd);
    }
    // The "{" that matches the "}" at plPosition, counting every brace; 0 if absent.
    void FindBraceGroupStart(std::int32_t plPosition, std::int32_t& plGroupStart) const noexcept;

    // ---- Taking parts. The builder does not change.

    // A plLength of 0, or one beyond the end, means to the end; empty if plStart is beyond it.
    std::u16string SubString(std::int32_t plStart, std::int32_t plLength = 0) const;
    // Empty unless 1 <= plStart < Length(): the last character alone cannot be had. -1 means to the
    // end. The whole content comes with the spare tail.
    std::u16string MidStr(std::int32_t plStart, std::int32_t plLength = -1) const;
    std::u16string LeftStr(std::int32_t plLength) const;
    std::u16string RightStr(std::int32_t plLength) const;
    // All but the last plLength characters. A negative plLength takes as many of the spare tail.
    std::u16string LeftStrLessBy(std::int32_t plLength) const;
    std::u16string LCaseStr() const { return inCase(lowerCase); }
    std::u16string UCaseStr() const { return inCase(upperCase); }
    std::u16string TrimStr() const { return trimmed(true, true); }
    std::u16string TrimLeftStr() const { return trimmed(true, false); }
    std::u16string TrimRightStr() const { return trimmed(false, true); }

    // ---- Editing.

    // Below 2 prepends, beyond the content appends (neither raises). The new length.
    std::int32_t Insert(std::u16string_view psString, std::int32_t plPosition);
    // As Insert of the source's result, in the width of its result builder.
    std::int32_t InsertTagResult(ResultSource& poTag, std::int32_t plPosition);
    // A plPosition below 1 is 1. A negative plLength removes nothing. Number of characters removed.
    std::int32_t Remove(std::int32_t plPosition, std::int32_t plLength);
    // A negative plPositionTo is the end. A plPositionFrom below 1 still counts from where it is.
    std::int32_t RemoveFromTo(std::int32_t plPositionFrom, std::int32_t plPositionTo);
    // Replaces from plStart on, left to right, each occurrence that ends at least two characters
    // before the end. Counts, and limits by plCount (negative: no limit), only replacements that
    // are longer than what they replace. plStart is 0 afterwards; an empty psFind does nothing.
    std::int32_t Replace(std::u16string_view psFind, std::u16string_view psReplace, std::int32_t& plStart,
                         std::int32_t& plCount, bool pbBinaryCompare = true);
    // Overwrites in place if the last overwritten character is at or before Length() - 2. Otherwise
    // replaces as many characters as psString has, or all that are left; the content may then grow.
    // At or beyond the last character: no effect.
    void ModifyMidStr(std::int32_t plPosition, std::u16string_view psString);
    // All of psTrimCharacters are trimmed. A content of nothing else stays as it is on the left
    // and is cleared on the right.
    void ModifyTrimStr(std::u16string_view psTrimCharacters);
    void ModifyTrimLeftStr(std::u16string_view psTrimCharacters);
    void ModifyTrimRightStr(std::u16string_view psTrimCharacters);
    // The range of MidStr; the whole content takes the spare tail with it.
    void ModifyUCaseStr(std::int32_t plStart = 1, std::int32_t plLength = -1) {
        modifyCase(plStart, plLength, upperCase);
    }
    void ModifyLCaseStr(std::int32_t plStart = 1, std::int32_t plLength = -1) {
        modifyCase(plStart, plLength, lowerCase);
    }

    // ---- Files: a byte is a character of the ANSI code page.

    // Replaces the content; buffer and content are then of the file's size. A file that cannot be
    // read leaves the builder as it was. The length.
    std::int32_t LoadFromFile(std::u16string_view psFileName) noexcept;
    // Characters appended; 0 when the file cannot be read.
    std::int32_t LoadFromFileAppend(std::u16string_view psFileName) noexcept;

    // ---- For the engine.

    // Append, which raises std::bad_alloc.
    void add(std::u16string_view text) {
        const std::size_t capacity = capacityFor(capacity_, length_, text.size());
        buffer_.replace(length_, text.size(), text);
        length_ += text.size();
        capacity_ = capacity;
    }
    // Memory for a content of that length; the buffer does not grow. Raises std::bad_alloc.
    void reserve(std::size_t length) { buffer_.reserve(length); }
    // Removes what follows the first `length` units, which must be there. The tail does not keep it.
    void truncate(std::size_t length) {
        buffer_.erase(length, length_ - length);
        length_ = length;
    }
    // Every unit `before` becomes `after`.
    void exchangeUnits(char16_t before, char16_t after) noexcept;

    // The content, until the next change.
    std::u16string_view contiguous() const noexcept { return {buffer_.data(), length_}; }
    // The unit at a position; U+0000 outside the content.
    char16_t unitAt(std::int32_t position) const noexcept {
        const std::size_t index = static_cast<std::size_t>(position) - 1;
        return index < length_ ? buffer_[index] : u'\0';
    }
    // A copy of the spare tail.
    std::u16string spareTail() const { return bufferCopy(length_, capacity_ - length_); }

private:
    static constexpr std::size_t keptBufferBytes = 5000;

    // The capacity that holds `added` characters after the first `length`. Raises std::bad_alloc beyond the limit.
    std::size_t capacityFor(std::size_t capacity, std::size_t length, std::size_t added) const {
        return added <= capacity - length ? capacity : grown(capacity, added);
    }
    std::size_t grown(std::size_t capacity, std::size_t added) const;
    void replaceUnits(std::size_t index, std::size_t count, std::u16string_view text);
    void eraseUnits(std::size_t index, std::size_t count) noexcept;
    bool isLarge() const noexcept { return capacity_ * sizeof(char16_t) > keptBufferBytes; }
    void release() noexcept;

    // 0-based; npos if absent.
    std::size_t findFrom(std::u16string_view sought, std::size_t start, Comparison comparison) const;
    // Of content and tail; index <= length_.
    std::u16string bufferCopy(std::size_t index, std::size_t count) const;
    std::u16string part(std::int32_t start, std::int32_t count) const;  // its copy from a position
    std::u16string inCase(std::u16string (*map)(std::u16string_view)) const;
    std::u16string trimmed(bool atStart, bool atEnd) const;  // without blanks there
    std::int32_t replaceAll(std::u16string_view sought, std::u16string_view replacement, std::size_t from,
                            std::int32_t limit, Comparison comparison);
    void takeSwept(std::u16string& swept, std::size_t removed, std::int32_t hits);
    std::int32_t rangeCount(std::int32_t plStart, std::int32_t plLength) const;
    void modifyCase(std::int32_t plStart, std::int32_t plLength, std::u16string (*map)(std::u16string_view));

    std::u16string buffer_;     // the content, then what the spare tail has kept; the rest of the tail is blank
    std::size_t length_ = 0;    // of the content
    std::size_t capacity_ = 0;  // buffer_.size() <= capacity_ <= maximumLength
    std::int32_t growthRate_ = 512;
};

}  // namespace velmor
