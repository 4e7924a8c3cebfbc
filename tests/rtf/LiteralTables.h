#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "LiteralModule1.h"
#include "platform/Services.h"
#include "rtf/TableMarkers.h"

namespace velmor::test {

// The table members said plainly, step by step, on a text that is shifted for every marker and every
// removal. Positions are 1-based; a range ends in front of its end.
class LiteralTables {
public:
    LiteralTables(std::u16string text, platform::Guids& guids) : text_(std::move(text)), guids_(guids) {}

    const std::u16string& text() const { return text_; }

    bool addMarkers() {
        if (text_.find(startTableMarker) != std::u16string::npos) return false;
        inserted_ = false;
        std::int32_t previousEnd = 0;
        for (std::int32_t row = firstRow(1); row != 0; row = firstRow(previousEnd + 1)) {
            const std::int32_t start = tableStart(row, previousEnd);
            std::int32_t end = tableEnd(start);
            if (end == 0) break;
            bracket(start, end);
            const std::int32_t marked = end;
            removeExtraDefinitions(start, end);
            // What was freed is no text, and must not be taken for a blank behind a row.
            text_.erase(text_.size() - static_cast<std::size_t>(marked - end));
            previousEnd = end - 1;
        }
        if (inserted_) text_.erase(text_.find_last_not_of(u' ') + 1);
        return inserted_;
    }

    void removeExtraDefinitions(std::int32_t start, std::int32_t& end) {
        std::int32_t from = start;
        for (std::int32_t row = find(u"\\row", from); row != 0 && row < end; row = find(u"\\row", from)) {
            const std::int32_t rowStart = from;
            from = row + 4;
            std::int32_t cell = findReverse(u"\\cell", row);
            while (cell != 0 && at(cell + 5) == u'x') cell = findReverse(u"\\cell", cell - 1);
            if (cell <= start || cell < rowStart || row - cell <= 6) continue;
            const std::u16string between = slice(cell + 5, row);
            if (between.find(u"{\\*\\korvane") != std::u16string::npos) continue;
            if (definitions(cell, row) > 0 && definitions(rowStart, cell) == 0) continue;
            text_ = slice(1, cell + 5) + slice(row, length() + 1) + std::u16string(between.size(), u' ');
            end -= static_cast<std::int32_t>(between.size());
            from = cell + 9;
        }
    }

    std::int32_t markNested(std::int32_t start, std::int32_t& end) {
        const std::vector<Item> items = itemsOf(start, end);
        std::vector<std::pair<std::int32_t, std::int32_t>> complete, unmarked;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!items[i].isRow || !items[i].last) continue;
            std::size_t first = i;
            while (first > 0 && items[first - 1].level >= items[i].level && !endsTable(items[first - 1], items[i])) {
                --first;
            }
            bool begun = false;
            for (std::size_t k = first; k <= i; ++k) begun |= items[k].level == items[i].level && items[k].first;
            if (!begun) continue;
            std::int32_t place = items[first].begin - 61;
            for (const auto& table : complete) place -= table.first == items[first].begin ? 61 : 0;
            complete.emplace_back(items[first].begin, items[i].end);
            if (place < 1 || !standsAt(place, startTableMarker)) unmarked.push_back(complete.back());
        }
        insertPairs(unmarked, end);
        return static_cast<std::int32_t>(unmarked.size());
    }

private:
    // A paragraph, or the properties of a nested row, which stand in a paragraph of its level.
    struct Item {
        std::int32_t level = 1;
        std::int32_t begin = 0;
        bool isRow = false;
        bool first = false;
        bool last = false;
        std::int32_t end = 0;
    };

    // ---- Text

    std::int32_t length() const { return static_cast<std::int32_t>(text_.size()); }
    char16_t at(std::int32_t position) const {
        return position >= 1 && position <= length() ? text_[static_cast<std::size_t>(position) - 1] : u'\0';
    }
    std::u16string slice(std::int32_t from, std::int32_t to) const {
        return text_.substr(static_cast<std::size_t>(from) - 1, static_cast<std::size_t>(to - from));
    }
    bool standsAt(std::int32_t position, std::u16string_view word) const {
        return text_.compare(static_cast<std::size_t>(position) - 1, word.size(), word) == 0;
    }
    bool escaped(std::int32_t position) const {
        std::int32_t run = 0;
        while (at(position - 1 - run) == u'\\') ++run;
        return run % 2 == 1;
    }
    bool letterAt(std::int32_t p) const { return (at(p) >= u'a' && at(p) <= u'z') || (at(p) >= u'A' && at(p) <= u'Z'); }
    bool isWord(std::int32_t position, std::u16string_view word) const {
        return standsAt(position, word) && !escaped(position) &&
               !letterAt(position + static_cast<std::int32_t>(word.size()));
    }
    std::int32_t find(std::u16string_view word, std::int32_t from) const {
        for (; from <= length(); ++from) {
            if (standsAt(from, word) && !escaped(from)) return from;
        }
        return 0;
    }
    std::int32_t findReverse(std::u16string_view word, std::int32_t from) const {
        for (from -= static_cast<std::int32_t>(word.size()) - 1; from >= 1; --from) {
            if (standsAt(from, word) && !escaped(from)) return from;
        }
        return 0;
    }
    std::int32_t skipWhite(std::int32_t position) const {
        while (at(position) == u' ' || at(position) == u'\t' || at(position) == u'\r' || at(position) == u'\n') {
            ++position;
        }
        return position;
    }

    // ---- Tables

    bool isFirstRow(std::int32_t position) const {
        return standsAt(position, u"\\trowd") && standsAt(skipWhite(position + 6), u"\\irow0");
    }
    std::int32_t firstRow(std::int32_t from) const {
        std::int32_t row = find(u"\\trowd", from);
        while (row != 0 && !isFirstRow(row)) row = find(u"\\trowd", row + 1);
        return row;
    }

    std::int32_t tableStart(std::int32_t start, std::int32_t previousEnd) const {
        if (start > 5 && standsAt(start - 5, u"\\cell")) {
            for (std::int32_t cell = findReverse(u"\\cell", start); cell > previousEnd;) {
                start = cell;
                cell = findReverse(u"\\cell", start - 1);
            }
        }
        if (const std::int32_t inTable = findReverse(u"\\intbl", start); inTable > previousEnd) {
            start = inTable;
            if (const std::int32_t paragraph = findReverse(u"\\par", start); paragraph > previousEnd) start = paragraph;
        }
        if (const std::int32_t level = findReverse(u"\\itap", start); level > previousEnd && at(level + 5) != u'0') {
            start = level;
        }
        return start;
    }

    // The "\row" that ends the table, with the nested tables before it marked; 0 when there is none.
    std::int32_t tableEnd(std::int32_t start) {
        std::int32_t end = rowOfLastRow(start);
        std::int32_t nested = 0;
        for (std::int32_t from = start; end != 0;) {
            const std::int32_t found = markNested(from, end);
            if (found == 0) break;
            nested += found;
            from = end;
            std::int32_t lastRows = 0;
            for (std::int32_t p = find(u"\\lastrow", start); p != 0 && p <= end; p = find(u"\\lastrow", p + 1)) {
                ++lastRows;
            }
            if (lastRows <= nested) end = rowOfLastRow(end);
        }
        return end;
    }
    std::int32_t rowOfLastRow(std::int32_t from) const {
        const std::int32_t lastRow = find(u"\\lastrow", from);
        return lastRow == 0 ? 0 : find(u"\\row", lastRow);
    }

    // Afterwards the end is behind the end marker.
    void bracket(std::int32_t start, std::int32_t& end) {
        const std::u16string identity = guids_.next();
        end += at(end + 4) == u' ' ? 5 : 4;
        insert(end, std::u16string(endTableMarker) + identity + u"}");
        insert(start, std::u16string(startTableMarker) + identity + u"}");
        end += 61 + 59;
    }
    void insert(std::int32_t position, const std::u16string& marker) {
        text_.insert(static_cast<std::size_t>(position) - 1, marker);
        inserted_ = true;
    }

    std::int32_t definitions(std::int32_t from, std::int32_t to) const {
        std::int32_t count = 0;
        for (std::int32_t p = find(u"\\trowd", from); p != 0 && p < to; p = find(u"\\trowd", p + 1)) {
            std::int32_t behind = p;
            while (skipWhite(behind - 1) == p) --behind;
            count += behind > 15 && isWord(behind - 15, u"\\nesttableprops") ? 0 : 1;
        }
        return count;
    }

    // ---- Nested tables

    static bool endsTable(const Item& item, const Item& row) {
        return item.isRow && item.last && item.level == row.level;
    }

    std::int32_t levelNumber(std::int32_t position) const {
        if (at(position) == u'-') return 0;
        std::int32_t level = 0, p = position;
        for (; at(p) >= u'0' && at(p) <= u'9'; ++p) level = std::min(level * 10 + (at(p) - u'0'), 100000000);
        return p == position ? 1 : level;
    }
    bool isMarker(std::int32_t p, std::u16string_view marker) const {
        const auto identity = p + static_cast<std::int32_t>(marker.size());
        if (p > length() || !standsAt(p, marker) || at(identity) != u'{' || at(identity + 38) != u'}') return false;
        for (std::int32_t i = identity + 1; i < identity + 37; ++i) {
            if (at(i) == u'{' || at(i) == u'}') return false;
        }
        return at(identity + 37) == u'}';
    }
    std::int32_t paragraphBegin(std::int32_t p) const {
        for (;;) {
            if (at(p) == u'}' || at(p) == u'\r' || at(p) == u'\n') {
                ++p;
            } else if (isMarker(p, startTableMarker)) {
                p += 61;
            } else if (isMarker(p, endTableMarker)) {
                p += 59;
            } else {
                return p;
            }
        }
    }
    // The brace that closes the group in which the position lies; the end when it is missing.
    std::int32_t closingBrace(std::int32_t p, std::int32_t end) const {
        std::int32_t depth = 1;
        for (; p < end; ++p) {
            if (escaped(p)) continue;
            if (at(p) == u'{') ++depth;
            if (at(p) == u'}' && --depth == 0) return p;
        }
        return end;
    }
    bool isCell(std::int32_t p) const { return standsAt(p, u"\\cell") && at(p + 5) != u'x'; }

    std::vector<Item> itemsOf(std::int32_t start, std::int32_t end) const {
        std::vector<Item> items;
        Item paragraph{1, paragraphBegin(start)};
        Item row;
        std::int32_t rowEnd = 0;  // the brace of the row that is being read
        std::int32_t level = 1, cells = 0;
        const auto endParagraph = [&](std::int32_t paragraphLevel, std::int32_t next) {
            paragraph.level = paragraphLevel;
            items.push_back(paragraph);
            if (paragraphLevel < 2) cells = 0;
            paragraph.begin = paragraphBegin(at(next) == u' ' ? next + 1 : next);
        };
        for (std::int32_t p = start; p < end; ++p) {
            if (p == rowEnd) {
                row.level = cells != 0 ? cells : std::max(level, 2);
                row.begin = paragraph.begin;
                row.end = p + 1;
                items.push_back(row);
                paragraph.begin = paragraphBegin(p + 1);
                rowEnd = 0;
            }
            if (at(p) != u'\\' || escaped(p)) continue;
            if (isWord(p, u"\\itap")) level = levelNumber(p + 5);
            if (isWord(p, u"\\pard")) level = 1;
            if (isWord(p, u"\\par")) endParagraph(level, p + 4);
            if (isCell(p)) endParagraph(1, p + 5);
            if (standsAt(p, u"\\row")) endParagraph(1, p + 4);
            if (isWord(p, u"\\nestcell")) {
                cells = std::max(level, 2);
                endParagraph(cells, p + 9);
            }
            // A row's properties end before its paragraph does.
            if (isWord(p, u"\\par") || isCell(p) || standsAt(p, u"\\row") || isWord(p, u"\\nestcell")) rowEnd = 0;
            if (standsAt(p, u"\\lastrow")) row.last = true;
            if (isWord(p, u"\\nesttableprops")) {
                rowEnd = closingBrace(p, end);
                row = Item{};
                row.isRow = true;
                row.first = isFirstRow(skipWhite(p + 15));
            }
            if (isWord(p, u"\\nonesttables") && at(p - 1) == u'{') {
                const std::int32_t brace = closingBrace(p, end);
                std::int32_t close = p;  // an outer cell or row ends the group at the latest
                while (close < brace && (escaped(close) || (!isCell(close) && !standsAt(close, u"\\row")))) ++close;
                if (close == brace && brace < end && paragraph.begin == p - 1)
                    paragraph.begin = paragraphBegin(brace + 1);
                p = close - 1;
            }
        }
        return items;
    }

    // Inner tables come before those that they lie in.
    void insertPairs(const std::vector<std::pair<std::int32_t, std::int32_t>>& tables, std::int32_t& end) {
        std::vector<std::pair<std::int32_t, bool>> done;  // places in the text as it was; true: a start
        const auto place = [&](std::int32_t position, bool isStart) {
            std::int32_t moved = position;
            for (const auto& [at, start] : done) {
                // Behind the markers that already stand there, but an outer table starts in front of an inner one.
                if (at < position || (at == position && !(isStart && start))) moved += start ? 61 : 59;
            }
            done.emplace_back(position, isStart);
            return moved;
        };
        for (const auto& [from, to] : tables) {
            const std::u16string identity = guids_.next();
            insert(place(from, true), std::u16string(startTableMarker) + identity + u"}");
            insert(place(to, false), std::u16string(endTableMarker) + identity + u"}");
            end += 61 + 59;
        }
    }

    std::u16string text_;
    platform::Guids& guids_;
    bool inserted_ = false;
};

}  // namespace velmor::test
