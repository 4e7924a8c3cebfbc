#pragma once

#include <cstdint>
#include <string>

#include "text/Compare.h"

namespace velmor::test {

// The model of the searches of Module1: one unit after the other, 1-based, on a flat text. A builder's
// buffer is its content and the known part of its spare tail.
struct LiteralBuffer {
    std::u16string buffer;
    std::int32_t length = 0;

    char16_t at(std::int32_t position) const {
        return position >= 1 && position <= length ? buffer[static_cast<std::size_t>(position) - 1] : u'\0';
    }

    bool matches(std::int32_t position, const std::u16string& sought, bool ignoringCase) const {
        const auto index = static_cast<std::size_t>(position) - 1;
        if (position < 1 || index + sought.size() > buffer.size()) return false;
        for (std::size_t i = 0; i < sought.size(); ++i) {
            const char16_t unit = buffer[index + i];
            if (ignoringCase ? lowerUnit(unit) != lowerUnit(sought[i]) : unit != sought[i]) return false;
        }
        return true;
    }

    std::int32_t find(const std::u16string& sought, std::int32_t start, bool ignoringCase) const {
        if (start < 1) return 0;
        for (; start <= length; ++start) {
            if (matches(start, sought, ignoringCase)) return start;
        }
        return 0;
    }

    std::int32_t findReverse(const std::u16string& sought, std::int32_t start, bool ignoringCase) const {
        if (start == -1 || start > length) start = length;
        const auto size = static_cast<std::int32_t>(sought.size());
        for (std::int32_t p = size == 0 ? start : start - size + 1; p >= 1; --p) {
            if (matches(p, sought, ignoringCase)) return p;
        }
        return 0;
    }

    // The number of backslashes that end at the position.
    std::int32_t run(std::int32_t position) const {
        std::int32_t count = 0;
        while (position - count >= 1 && at(position - count) == u'\\') ++count;
        return count;
    }

    bool delimiterAt(std::int32_t position) const {
        const char16_t unit = at(position);
        return unit == 13 || unit == 32 || unit == 92 || unit == 123 || unit == 125;
    }

    std::int32_t findRTFWord(std::int32_t start, const std::u16string& sought, bool ignoringCase,
                             bool delimited) const {
        const auto size = static_cast<std::int32_t>(sought.size());
        start = find(sought, start, ignoringCase);
        if (start == 0 || (start > 1 && at(start - 1) != u'\\')) return start;
        const bool isEscaped = start > 1 && run(start - 1) % 2 == 1;
        if (!isEscaped && (!delimited || delimiterAt(start + size))) return start;
        return findRTFWord(start + 1, sought, ignoringCase, delimited);
    }

    // The rule that the other three searches share.
    bool isWord(std::int32_t position, const std::u16string& sought, bool delimited) const {
        if (run(position) % 2 == 0) return false;
        return !delimited || delimiterAt(position + static_cast<std::int32_t>(sought.size()));
    }

    std::int32_t findRTFWordReverse(const std::u16string& sought, std::int32_t start, bool ignoringCase,
                                    bool delimited) const {
        start = findReverse(sought, start, ignoringCase);
        if (start == 0 || isWord(start, sought, delimited)) return start;
        // Nothing precedes the first character; -1 would mean the end.
        return start == 1 ? 0 : findRTFWordReverse(sought, start - 1, ignoringCase, delimited);
    }

    std::int32_t findRTFWordForward(std::int32_t start, const std::u16string& sought, bool ignoringCase,
                                    bool delimited) const {
        start = find(sought, start, ignoringCase);
        if (start == 0 || isWord(start, sought, delimited)) return start;
        return findRTFWordForward(start + 1, sought, ignoringCase, delimited);
    }

    std::int32_t count(std::int32_t start, const std::u16string& sought, std::int32_t end, bool unescapedOnly) const {
        if (end == 0) end = length;
        std::int32_t count = 0;
        for (;; ++start) {
            start = unescapedOnly ? findRTFWordForward(start, sought, false, false) : find(sought, start, false);
            if (start == 0 || start > end) return count;
            ++count;
        }
    }

    std::int32_t firstOfAny(std::int32_t start, const std::u16string& set, bool ignoringCase) const {
        std::int32_t first = 0;
        for (const char16_t unit : set) {
            const std::int32_t found = find(std::u16string(1, unit), start, ignoringCase);
            if (found != 0 && (first == 0 || found < first)) first = found;
        }
        return first;
    }

    // Start and end of the group.
    std::pair<std::int32_t, std::int32_t> groupEnd(std::int32_t start, const std::u16string& opening,
                                                   std::int32_t limit) const {
        start = find(opening, start, true);
        if (start == 0) return {0, 0};
        if (limit == 0) limit = length;
        std::int32_t depth = 1;
        for (std::int32_t p = start + 1; p <= limit && p <= length; ++p) {
            if (at(p) == u'{' && at(p - 1) != u'\\') ++depth;
            if (at(p) == u'}' && at(p - 1) != u'\\' && --depth == 0) return {start, p};
        }
        return {start, 0};
    }

    void replaceRTFWord(const std::u16string& sought, const std::u16string& replacement, std::int32_t start,
                        std::int32_t count) {
        for (std::int32_t remaining = count == -1 ? length : count; remaining >= 1; --remaining) {
            start = findRTFWord(start, sought, false, false);
            if (start == 0 || start + static_cast<std::int32_t>(sought.size()) > length + 1) return;
            const auto index = static_cast<std::size_t>(start) - 1;
            buffer.replace(index, sought.size(), replacement);
            length += static_cast<std::int32_t>(replacement.size()) - static_cast<std::int32_t>(sought.size());
            start += static_cast<std::int32_t>(replacement.size());
        }
    }
};

}  // namespace velmor::test
