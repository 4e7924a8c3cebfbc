#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::test {

// The string builder at its plainest: one flat buffer, edited by moving characters up and down in
// it. Slow and obvious; privStrCat must not differ from it in anything that a caller can see.
class LiteralBuilder {
public:
    using Text = std::u16string;
    using View = std::u16string_view;
    using Long = std::int32_t;

    void Append(View text) {
        grow(size(text));
        put(length_ + 1, text);
        length_ += size(text);
    }
    void Prepend(View text) {
        grow(size(text));
        move(1, length_, size(text) + 1);
        put(1, text);
        length_ += size(text);
    }
    void Surround(View before, View behind) {
        Append(behind);
        Prepend(before);
    }
    Text ReturnVal() const { return buffer_.substr(0, at(length_)); }
    Text DumpVal() {
        Text text = ReturnVal();
        Reset();
        return text;
    }
    void Reset() {
        if (buffer_.size() * 2 > 5000) buffer_.clear();
        length_ = 0;
    }
    void GrowthRate(Long rate) { rate_ = rate > 16392 ? 16392 : rate < 255 ? 255 : rate; }
    Long GrowthRate() const { return rate_; }
    Long BufferLength() const { return size(buffer_); }
    Long Length() const { return length_; }
    Text spareTail() const { return buffer_.substr(at(length_)); }

    Long Find(View sought, Long start, bool binary) const {
        if (start > length_) return 0;
        if (start < 1) raise(5);
        for (Long position = start; position <= length_; ++position) {
            if (standsAt(sought, position, BufferLength(), binary)) return position;
        }
        return 0;
    }
    Long FindReverse(View sought, Long start, bool binary) const {
        if (start == -1 || start > length_) start = length_;
        if (start < 1) return 0;
        if (sought.empty()) return start;
        for (Long position = start; position >= 1; --position) {
            if (standsAt(sought, position, start, binary)) return position;
        }
        return 0;
    }
    Long FindContains(View characters, Long start, bool binary) const {
        Long smallest = 0;
        for (const char16_t& unit : characters) {
            const Long hit = Find(View(&unit, 1), start, binary);
            if (hit != 0 && (smallest == 0 || hit < smallest)) smallest = hit;
        }
        return smallest;
    }
    Long FindCount(View sought, Long start, Long end, bool binary, bool rtf) const {
        if (end == 0) end = length_;
        Long count = 0;
        for (Long hit = Find(sought, start, binary); hit != 0; hit = Find(sought, hit + 1, binary)) {
            if (rtf && isEscaped(hit)) continue;
            if (hit > end) break;
            ++count;
        }
        return count;
    }
    Long WordCount() const {
        if (buffer_.empty()) return 0;
        Long words = 0;
        bool inWord = false;
        for (Long unit = 0; unit <= (length_ - 1) / 2; ++unit) {
            const char16_t first = buffer_[at(2 * unit)];
            const char16_t second = at(2 * unit + 1) < buffer_.size() ? buffer_[at(2 * unit + 1)] : u'\0';
            for (const bool word : {(first & 0xFF) > 32, second >= 0x21 && second < 0x8000}) {
                if (word && !inWord) ++words;
                inWord = word;
            }
        }
        return words;
    }
    Long Ascii(Long position) const {
        if (position < 1 || position > length_) raise(5);
        return ansiCode(buffer_[at(position - 1)]);
    }
    std::pair<Long, Long> FindBraceGroupEnd(Long start, View sought, Long limit) const {
        const Long group = Find(sought, start, false);
        if (group == 0) return {0, 0};
        if (limit == 0) limit = length_;
        Long depth = 1;
        Long current = group;
        for (;;) {
            const Long opening = Find(u"{", current + 1, true);
            const Long closing = Find(u"}", current + 1, true);
            if (opening == 0 && closing == 0) return {group, 0};
            current = opening == 0 ? closing : closing == 0 ? opening : opening < closing ? opening : closing;
            if (current > limit) return {group, 0};
            if (buffer_[at(current - 2)] == u'\\') continue;
            depth += current == opening ? 1 : -1;
            if (depth == 0) return {group, current};
        }
    }
    Long FindBraceGroupStart(Long position) const {
        if (position < 1 || position > length_ || buffer_[at(position - 1)] != u'}') return 0;
        Long depth = 0;
        for (; position >= 1; --position) {
            if (buffer_[at(position - 1)] == u'}') ++depth;
            if (buffer_[at(position - 1)] == u'{') --depth;
            if (depth == 0) return position;
        }
        return 0;
    }

    Text SubString(Long start, Long count) const {
        if (start > length_) return {};
        if (count == 0 || checked(std::int64_t{start} + count) > length_ + 1) {
            count = checked(std::int64_t{length_} - start + 1);
        }
        return extract(start, count);
    }
    Text LeftStr(Long count) const { return count > length_ ? ReturnVal() : count < 1 ? Text() : extract(1, count); }
    Text RightStr(Long count) const {
        return count > length_ ? ReturnVal() : count < 1 ? Text() : extract(length_ - count + 1, count);
    }
    Text LeftStrLessBy(Long count) const {
        if (count > length_) return {};
        return buffer_.substr(0, at(checked(std::int64_t{length_} - count)));
    }
    Text MidStr(Long start, Long count) const {
        if (!clipRange(start, count)) return {};
        return start == 1 && count == length_ ? buffer_ : extract(start, count);
    }
    Text TrimStr() const { return trimmed(true, true); }
    Text TrimLeftStr() const { return trimmed(true, false); }
    Text TrimRightStr() const { return trimmed(false, true); }

    Long Insert(View text, Long position) {
        if (position < 2) {
            Prepend(text);
        } else if (position > length_) {
            Append(text);
        } else {
            grow(size(text));
            move(position, length_ - position + 1, position + size(text));
            put(position, text);
            length_ += size(text);
        }
        return length_;
    }
    Long InsertTagResult(Long width, View result, Long position) {
        if (position < 2 || position > length_) return Insert(result, position);
        grow(width);
        move(position, length_ - position + 1, position + width);
        put(position, result.substr(0, at(width)));
        length_ += width;
        return length_;
    }
    Long Remove(Long position, Long count) {
        if (position < 1) position = 1;
        if (position > length_) return 0;
        if (checked(std::int64_t{position} + count) > length_ + 1) count = length_ - position + 1;
        if (count < 0) return 0;
        move(position + count, length_ - position - count + 1, position);
        length_ -= count;
        return count;
    }
    Long RemoveFromTo(Long from, Long to) {
        if (to < 0) to = length_;
        if (from > to) return 0;
        return Remove(from, checked(checked(std::int64_t{to} - from) + std::int64_t{1}));
    }
    Long Replace(View sought, View replacement, Long& start, Long& limit, bool binary) {
        const Long f = size(sought);
        const Long r = size(replacement);
        Long count = 0;
        while (f > 0 && start > 0) {
            const Long hit = Find(sought, start, binary);
            if (hit == 0 || hit + f >= length_) break;
            if (f == r) {
                put(hit, replacement);
            } else if (f < r) {
                Remove(hit, f);
                Insert(replacement, hit);
                ++count;
                if (limit >= 0 && count >= limit) break;
            } else {
                put(hit, replacement);
                Remove(hit + r, f - r);
            }
            start = hit + r;
        }
        start = 0;
        return count;
    }
    void ModifyMidStr(Long position, View text) {
        if (checked(std::int64_t{position} + size(text)) < length_) {
            if (position < 1) raise(5);
            put(position, text);
        } else if (position > 0 && position < length_) {
            Remove(position, size(text));
            Insert(text, position);
        }
    }
    void ModifyTrimLeftStr(View characters) {
        for (Long i = 1; i <= length_; ++i) {
            if (characters.find(buffer_[at(i - 1)]) != View::npos) continue;
            if (i >= 2) Remove(1, i - 1);
            return;
        }
    }
    void ModifyTrimRightStr(View characters) {
        while (length_ > 0 && characters.find(buffer_[at(length_ - 1)]) != View::npos) --length_;
    }
    void ModifyTrimStr(View characters) {
        ModifyTrimLeftStr(characters);
        ModifyTrimRightStr(characters);
    }
    void ModifyCase(Long start, Long count, bool upper) {
        if (!clipRange(start, count)) return;
        if (start == 1 && count == length_) count = BufferLength();
        for (Long i = start; i < start + count; ++i) {
            char16_t& unit = buffer_[at(i - 1)];
            unit = upper ? upperUnit(unit) : lowerUnit(unit);
        }
    }
    void Load(View text) {
        buffer_ = text;
        length_ = size(text);
    }

private:
    [[noreturn]] static void raise(Long number) { throw Error(number, u"VelmorStrCat", u""); }
    static Long checked(std::int64_t value) {
        if (value != static_cast<Long>(value)) raise(6);
        return static_cast<Long>(value);
    }
    static std::size_t at(Long value) { return static_cast<std::size_t>(value); }
    static Long size(View text) { return static_cast<Long>(text.size()); }

    void grow(Long n) {
        if (length_ + n > BufferLength()) buffer_.append(at(n <= rate_ ? rate_ : n), u' ');
    }
    void put(Long position, View text) {
        for (std::size_t i = 0; i < text.size() && at(position) - 1 + i < buffer_.size(); ++i) {
            buffer_[at(position) - 1 + i] = text[i];
        }
    }
    void move(Long from, Long count, Long to) {
        const Text moved = buffer_.substr(at(from - 1), at(count));
        put(to, moved);
    }
    Text extract(Long start, Long count) const {
        if (start < 1 || count < 0) raise(5);
        return buffer_.substr(at(start - 1), at(count));
    }
    bool clipRange(Long start, Long& count) const {
        if (start < 1 || start >= length_) return false;
        if (count == -1 || checked(std::int64_t{start} + count) - std::int64_t{1} > length_) {
            count = length_ - start + 1;
        }
        if (count < 0) raise(5);
        return true;
    }
    bool standsAt(View sought, Long position, Long end, bool binary) const {
        if (std::int64_t{position} - 1 + static_cast<std::int64_t>(sought.size()) > end) return false;
        const View there = View(buffer_).substr(at(position - 1), sought.size());
        return binary ? there == sought : equalIgnoringCase(there, sought);
    }
    bool isEscaped(Long hit) const {
        Long run = 0;
        while (run < hit - 1 && buffer_[at(hit - 2 - run)] == u'\\') ++run;
        return run % 2 == 1;
    }
    Text trimmed(bool left, bool right) const {
        Text text = ReturnVal();
        while (left && !text.empty() && text.front() == u' ') text.erase(0, 1);
        while (right && !text.empty() && text.back() == u' ') text.pop_back();
        return text;
    }

    Text buffer_;
    Long length_ = 0;
    Long rate_ = 512;
};

}  // namespace velmor::test
