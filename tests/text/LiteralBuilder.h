#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "text/Compare.h"
#include "text/Encoding.h"
#include "text/Error.h"
#include "text/ResultSource.h"
#include "text/privStrCat.h"

namespace velmor::test {

// The model of the string builder: one flat buffer, edited by moving characters. It is slow and simple;
// a caller must see no difference between it and privStrCat.
class LiteralBuilder {
public:
    using Text = std::u16string;
    using View = std::u16string_view;
    using Long = std::int32_t;

    void Append(View text) { put(opened(length_ + 1, size(text)), text); }
    void AppendVal(View text) { Append(text); }
    void Prepend(View text) { put(opened(1, size(text)), text); }
    void Surround(View before, View behind) {
        Append(behind);
        Prepend(before);
    }
    Text ReturnVal() const { return buffer_.substr(0, at(length_)); }
    Text DumpVal() {
        const Text text = ReturnVal();
        Reset();
        return text;
    }
    void Reset() {
        if (buffer_.size() * 2 > 5000) buffer_.clear();
        length_ = 0;
    }
    void GrowthRate(Long rate) { rate_ = std::clamp(rate, 255, 16392); }
    Long GrowthRate() const { return rate_; }
    Long BufferLength() const { return size(buffer_); }
    Long Length() const { return length_; }
    Text spareTail() const { return buffer_.substr(at(length_)); }

    Long Find(View sought, Long start, bool binary) const {
        if (start > length_) return 0;
        if (start < 1) raise(5);
        while (start <= length_ && !standsAt(sought, start, BufferLength(), binary)) ++start;
        return start > length_ ? 0 : start;
    }
    Long FindReverse(View sought, Long start, bool binary) const {
        if (start == -1 || start > length_) start = length_;
        for (Long position = start; position >= 1; --position) {
            if (sought.empty() || standsAt(sought, position, start, binary)) return position;
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
        Long words = 0;
        bool inWord = false;
        for (std::size_t first = 0; !buffer_.empty() && first <= at((length_ - 1) / 2) * 2; first += 2) {
            const char16_t second = first + 1 < buffer_.size() ? buffer_[first + 1] : u'\0';
            for (const bool word : {(buffer_[first] & 0xFF) > 32, second >= 0x21 && second < 0x8000}) {
                if (word && !inWord) ++words;
                inWord = word;
            }
        }
        return words;
    }
    Long Ascii(Long position) const {
        if (position < 1 || position > length_) raise(5);
        return ansiCode(unit(position));
    }
    void FindBraceGroupEnd(Long start, View sought, Long limit, Long& group, Long& end) const {
        end = 0;
        group = Find(sought, start, false);
        if (group == 0) return;
        if (limit == 0) limit = length_;
        Long depth = 1;
        for (Long current = group; depth > 0;) {
            current = FindContains(u"{}", current + 1, true);
            if (current == 0 || current > limit) return;
            if (unit(current - 1) != u'\\') depth += unit(current) == u'{' ? 1 : -1;
            end = depth == 0 ? current : 0;
        }
    }
    void ScanBraceGroupEnd(Long start, View sought, Long limit, Long& group, Long& end) const {
        FindBraceGroupEnd(start, sought, limit, group, end);
    }
    void FindBraceGroupStart(Long position, Long& group) const {
        group = 0;
        if (position < 1 || position > length_ || unit(position) != u'}') return;
        for (Long depth = 0; position >= 1 && group == 0; --position) {
            if (unit(position) == u'}') ++depth;
            if (unit(position) == u'{') --depth;
            if (depth == 0) group = position;
        }
    }

    Text SubString(Long start, Long count) const {
        if (start > length_) return {};
        if (count == 0 || sum(start, count) > length_ + 1) count = sum(length_ + 1, -std::int64_t{start});
        return extract(start, count);
    }
    Text LeftStr(Long count) const { return buffer_.substr(0, at(std::clamp(count, 0, length_))); }
    Text RightStr(Long count) const { return ReturnVal().substr(at(length_ - std::clamp(count, 0, length_))); }
    Text LeftStrLessBy(Long count) const {
        return count > length_ ? Text() : buffer_.substr(0, at(sum(length_, -std::int64_t{count})));
    }
    Text MidStr(Long start, Long count) const {
        if (!clipRange(start, count)) return {};
        return start == 1 && count == length_ ? buffer_ : extract(start, count);
    }
    Text TrimStr() const { return trimmed(true, true); }
    Text TrimLeftStr() const { return trimmed(true, false); }
    Text TrimRightStr() const { return trimmed(false, true); }

    Long Insert(View text, Long position) {
        put(opened(position < 2 ? 1 : std::min(position, length_ + 1), size(text)), text);
        return length_;
    }
    Long InsertTagResult(ResultSource& source, Long position) {
        const Text result = source.result();
        if (position < 2 || position > length_) return Insert(result, position);
        const Long width = source.resultBuilder()->Length();
        put(opened(position, width), View(result).substr(0, at(width)));
        return length_;
    }
    Long Remove(Long position, Long count) {
        position = std::max(position, 1);
        if (position > length_) return 0;
        if (sum(position, count) > length_ + 1) count = length_ - position + 1;
        if (count < 0) return 0;
        move(position + count, length_ - position - count + 1, position);
        length_ -= count;
        return count;
    }
    Long RemoveFromTo(Long from, Long to) {
        if (to < 0) to = length_;
        return from > to ? 0 : Remove(from, sum(sum(to, -std::int64_t{from}), 1));
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
        if (sum(position, size(text)) < length_) {
            if (position < 1) raise(5);
            put(position, text);
        } else if (position > 0 && position < length_) {
            Remove(position, size(text));
            Insert(text, position);
        }
    }
    void ModifyTrimLeftStr(View characters) {
        const std::size_t kept = ReturnVal().find_first_not_of(characters);
        if (kept != Text::npos && kept > 0) Remove(1, static_cast<Long>(kept));
    }
    void ModifyTrimRightStr(View characters) {
        while (length_ > 0 && characters.find(unit(length_)) != View::npos) --length_;
    }
    void ModifyTrimStr(View characters) {
        ModifyTrimLeftStr(characters);
        ModifyTrimRightStr(characters);
    }
    void ModifyUCaseStr(Long start, Long count) { modifyCase(start, count, upperUnit); }
    void ModifyLCaseStr(Long start, Long count) { modifyCase(start, count, lowerUnit); }

private:
    [[noreturn]] static void raise(Long number) { throw Error(number, u"VelmorStrCat", u""); }
    static Long sum(std::int64_t left, std::int64_t right) {
        if (left + right != static_cast<Long>(left + right)) raise(6);
        return static_cast<Long>(left + right);
    }
    static std::size_t at(Long value) { return static_cast<std::size_t>(value); }
    static Long size(View text) { return static_cast<Long>(text.size()); }
    const char16_t& unit(Long position) const { return buffer_[at(position - 1)]; }

    // Makes room for n characters at the position.
    Long opened(Long position, Long n) {
        if (length_ + n > BufferLength()) buffer_.append(at(std::max(n, rate_)), u' ');
        move(position, length_ - position + 1, position + n);
        length_ += n;
        return position;
    }
    void put(Long position, View text) {
        for (std::size_t i = 0; i < text.size() && at(position) - 1 + i < buffer_.size(); ++i) {
            buffer_[at(position) - 1 + i] = text[i];
        }
    }
    void move(Long from, Long count, Long to) { put(to, Text(buffer_, at(from - 1), at(count))); }
    Text extract(Long start, Long count) const {
        if (start < 1 || count < 0) raise(5);
        return buffer_.substr(at(start - 1), at(count));
    }
    bool clipRange(Long start, Long& count) const {
        if (start < 1 || start >= length_) return false;
        if (count == -1 || sum(start, count) - 1 > length_) count = length_ - start + 1;
        if (count < 0) raise(5);
        return true;
    }
    template <typename Map>
    void modifyCase(Long start, Long count, Map map) {
        if (!clipRange(start, count)) return;
        if (start == 1 && count == length_) count = BufferLength();
        for (Long i = 0; i < count; ++i) buffer_[at(start - 1 + i)] = map(buffer_[at(start - 1 + i)]);
    }
    bool standsAt(View sought, Long position, Long end, bool binary) const {
        if (std::int64_t{position} - 1 + size(sought) > end) return false;
        const View there = View(buffer_).substr(at(position - 1), sought.size());
        return binary ? there == sought : equalIgnoringCase(there, sought);
    }
    bool isEscaped(Long hit) const {
        Long run = 0;
        while (run < hit - 1 && unit(hit - 1 - run) == u'\\') ++run;
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
