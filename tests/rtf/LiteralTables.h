#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/Services.h"
#include "rtf/read/RtfReader.h"
#include "rtf/tables/TableMarkers.h"

namespace velmor::test {

// The model of the table members: step by step, on a text that is shifted for every marker and every
// removal. Indices are 0-based; a range excludes its end.
class LiteralTables {
public:
    LiteralTables(std::u16string text, platform::Guids& guids) : text_(std::move(text)), guids_(guids) {}

    const std::u16string& text() const { return text_; }

    void addMarkers() {
        if (text_.find(startTableMarker) != npos) return;
        bool any = false;
        for (std::size_t row = firstRow(0), previous = 0; row != npos; row = firstRow(previous)) {
            const std::size_t start = tableStart(row, previous), length = text_.size();
            std::size_t end = tableEnd(start);
            any = any || end != npos || text_.size() != length;
            if (end == npos) break;
            end += at(end + 4) == u' ' ? 5 : 4;
            bracket(start, end);
            previous = end += 120;
            removeExtraDefinitions(start, previous);
            // The freed end is not text, and not the blank after a row.
            text_.erase(text_.size() - (end - previous));
        }
        if (any) text_.erase(text_.find_last_not_of(u' ') + 1);
    }

    void removeExtraDefinitions(std::size_t start, std::size_t& end) {
        std::size_t rowStart = start;
        for (std::size_t row; (row = find(u"\\row", rowStart)) < end;) {
            std::size_t cell = findReverse(u"\\cell", row, start + 1);
            while (cell != npos && at(cell + 5) == u'x') cell = findReverse(u"\\cell", cell, start + 1);
            const std::u16string between =
                cell == npos || cell + 5 > row ? u"" : text_.substr(cell + 5, row - cell - 5);
            const bool isOwn = cell != npos && cell >= rowStart && between.size() > 1;
            const bool isOnly = isOwn && definitions(cell, row) > 0 && definitions(rowStart, cell) == 0;
            rowStart = row + 4;
            if (!isOwn || isOnly || between.find(u"{\\*\\korvane") != npos) continue;
            text_.erase(cell + 5, between.size()).append(between.size(), u' ');
            end -= between.size();
            rowStart = cell + 9;
        }
    }

    std::size_t markNested(std::size_t start, std::size_t& end) {
        const std::vector<Item> items = itemsOf(start, end);
        std::vector<Table> found;
        for (std::size_t i = 0; i < items.size(); ++i) {
            if (!items[i].isRow || !items[i].last) continue;
            std::size_t first = i;
            while (first > 0 && items[first - 1].level >= items[i].level && !endsTable(items[first - 1], items[i])) {
                --first;
            }
            bool begun = false;
            for (std::size_t k = first; k <= i; ++k) begun |= items[k].level == items[i].level && items[k].first;
            if (!begun) continue;
            const Table table{items[first].begin, items[i].end};
            found.push_back(table);
        }
        for (std::size_t i = 0; i < found.size(); ++i) {
            bracket(found[i].begin, found[i].end);
            for (std::size_t k = i + 1; k < found.size(); ++k) {
                // Tables follow those that lie in them; both may begin in one place.
                const Table done = found[i];
                found[k].begin += found[k].begin >= done.end ? 120 : found[k].begin > done.begin ? 61 : 0;
                found[k].end += 120;
            }
            end += 120;
        }
        return found.size();
    }

private:
    static constexpr std::size_t npos = std::u16string::npos;
    struct Table {
        std::size_t begin, end;
    };
    // A paragraph, or the properties of a nested row, which are in a paragraph of its level.
    struct Item {
        std::size_t level = 1, begin = 0, end = 0;
        bool isRow = false, first = false, last = false;
    };

    char16_t at(std::size_t i) const { return i < text_.size() ? text_[i] : u'\0'; }
    bool isWord(std::size_t i, std::u16string_view word) const {
        return wordStandsAt(text_, i, word) && !isEscaped(text_, i);
    }
    std::size_t find(std::u16string_view word, std::size_t from) const {
        while ((from = text_.find(word, from)) != npos && isEscaped(text_, from)) ++from;
        return from;
    }
    // The last one that ends at or before `from` and begins at or after `begin`.
    std::size_t findReverse(std::u16string_view word, std::size_t from, std::size_t begin) const {
        for (std::size_t i = from + 1; i-- > begin;) {
            if (i + word.size() <= from + 1 && standsAt(text_, i, word) && !isEscaped(text_, i)) return i;
        }
        return npos;
    }
    void bracket(std::size_t start, std::size_t end) {
        const std::u16string identity = guids_.next();
        text_.insert(end, std::u16string(endTableMarker) + identity + u"}");
        text_.insert(start, std::u16string(startTableMarker) + identity + u"}");
    }

    // ---- Tables

    bool isFirstRow(std::size_t i) const {
        return standsAt(text_, i, u"\\trowd") && standsAt(text_, skipWhiteSpace(text_, i + 6), u"\\irow0");
    }
    std::size_t firstRow(std::size_t from) const {
        while ((from = find(u"\\trowd", from)) != npos && !isFirstRow(from)) ++from;
        return from;
    }

    std::size_t tableStart(std::size_t start, std::size_t previous) const {
        const auto last = [&](std::u16string_view word) { return findReverse(word, start, previous); };
        if (start >= previous + 5 && standsAt(text_, start - 5, u"\\cell")) {
            while (last(u"\\cell") != npos) start = last(u"\\cell");
        }
        if (last(u"\\intbl") != npos) {
            start = last(u"\\intbl");
            if (last(u"\\par") != npos) start = last(u"\\par");
        }
        return last(u"\\itap") != npos && at(last(u"\\itap") + 5) != u'0' ? last(u"\\itap") : start;
    }

    // The "\row" that ends the table, with the nested tables before it marked; npos without one.
    std::size_t tableEnd(std::size_t start) {
        std::size_t end = rowOfLastRow(start), nested = 0;
        for (std::size_t from = start; end != npos;) {
            const std::size_t found = markNested(from, end);
            if (found == 0) break;
            nested += found;
            from = end;
            std::size_t lastRows = 0;
            for (std::size_t i = start; (i = find(u"\\lastrow", i)) <= end; ++i) ++lastRows;
            if (lastRows <= nested) end = rowOfLastRow(end);
        }
        return end;
    }
    std::size_t rowOfLastRow(std::size_t from) const {
        const std::size_t lastRow = find(u"\\lastrow", from);
        return lastRow == npos ? npos : find(u"\\row", lastRow);
    }

    std::size_t definitions(std::size_t from, std::size_t to) const {
        std::size_t count = 0;
        for (std::size_t i = from; (i = find(u"\\trowd", i)) < to; ++i) {
            std::size_t behind = i;
            while (behind > 0 && isWhiteSpace(text_[behind - 1])) --behind;
            count += behind >= 15 && isWord(behind - 15, u"\\nesttableprops") ? 0 : 1;
        }
        return count;
    }

    // ---- Nested tables

    static bool endsTable(const Item& item, const Item& row) {
        return item.isRow && item.last && item.level == row.level;
    }
    std::size_t levelNumber(std::size_t i) const {
        if (at(i) < u'0' || at(i) > u'9') return at(i) == u'-' ? 0 : 1;
        std::size_t level = 0;
        for (; at(i) >= u'0' && at(i) <= u'9'; ++i) level = std::min<std::size_t>(level * 10 + (at(i) - u'0'), 1000000);
        return level;
    }
    bool isMarker(std::size_t i, std::u16string_view marker) const {
        const std::size_t identity = i + marker.size();
        return standsAt(text_, i, marker) && at(identity) == u'{' && standsAt(text_, identity + 37, u"}}") &&
               text_.find_first_of(u"{}", identity + 1) == identity + 37;
    }
    std::size_t paragraphBegin(std::size_t i) const {
        for (;;) {
            if (at(i) == u'}' || at(i) == u'\r' || at(i) == u'\n') {
                ++i;
            } else if (isMarker(i, startTableMarker)) {
                i += 61;
            } else if (isMarker(i, endTableMarker)) {
                i += 59;
            } else {
                return i;
            }
        }
    }
    // The brace that closes the group around the place; the end if it is absent.
    std::size_t closingBrace(std::size_t i, std::size_t end) const {
        for (std::size_t depth = 1; i < end; ++i) {
            if (isEscaped(text_, i)) continue;
            if (text_[i] == u'{') ++depth;
            if (text_[i] == u'}' && --depth == 0) break;
        }
        return i;
    }
    // An outer cell or row.
    bool endsOuter(std::size_t i) const {
        const bool isCell = standsAt(text_, i, u"\\cell") && at(i + 5) != u'x';
        return (isCell || standsAt(text_, i, u"\\row")) && !isEscaped(text_, i);
    }

    std::vector<Item> itemsOf(std::size_t start, std::size_t end) const {
        std::vector<Item> items;
        Item paragraph, row;
        paragraph.begin = paragraphBegin(start);
        std::size_t rowEnd = npos;  // the brace of the row that is being read
        std::size_t level = 1, cells = 0;
        const auto endParagraph = [&](std::size_t paragraphLevel, std::size_t next) {
            paragraph.level = paragraphLevel;
            items.push_back(paragraph);
            if (paragraphLevel < 2) cells = 0;
            paragraph.begin = paragraphBegin(at(next) == u' ' ? next + 1 : next);
            rowEnd = npos;  // which ends before its paragraph does
        };
        for (std::size_t i = start; i < std::min(end, text_.size()); ++i) {
            if (i == rowEnd) {
                row.level = cells != 0 ? cells : std::max<std::size_t>(level, 2);
                row.begin = paragraph.begin;
                row.end = i + 1;
                items.push_back(row);
                paragraph.begin = paragraphBegin(i + 1);
                rowEnd = npos;
            }
            if (isWord(i, u"\\itap")) level = levelNumber(i + 5);
            if (isWord(i, u"\\pard")) level = 1;
            if (isWord(i, u"\\par")) endParagraph(level, i + 4);
            if (endsOuter(i)) endParagraph(1, i + (text_[i + 1] == u'c' ? 5 : 4));
            if (isWord(i, u"\\nestcell")) {
                cells = std::max<std::size_t>(level, 2);
                endParagraph(cells, i + 9);
            }
            if (standsAt(text_, i, u"\\lastrow") && !isEscaped(text_, i)) row.last = true;
            if (isWord(i, u"\\nesttableprops")) {
                rowEnd = closingBrace(i, end);
                row = Item{};
                row.isRow = true;
                row.first = isFirstRow(skipWhiteSpace(text_, i + 15));
            }
            if (isWord(i, u"\\nonesttables") && i > 0 && text_[i - 1] == u'{') {
                const std::size_t brace = closingBrace(i, end);
                std::size_t close = i;  // an outer cell or row ends the group at the latest
                while (close < brace && !endsOuter(close)) ++close;
                if (close == brace && brace < end && paragraph.begin == i - 1) {
                    paragraph.begin = paragraphBegin(brace + 1);
                }
                i = close - 1;
            }
        }
        return items;
    }

    std::u16string text_;
    platform::Guids& guids_;
};

}  // namespace velmor::test
