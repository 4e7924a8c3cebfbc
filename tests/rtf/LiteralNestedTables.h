#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/read/BraceScanner.h"
#include "rtf/read/ParagraphText.h"
#include "rtf/tables/NestedWord.h"
#include "rtf/tables/RowDefinition.h"
#include "rtf/tables/TableMarkers.h"
#include "rtf/tables/TableWord.h"

namespace velmor::test {

// The model of the conversion of nested tables, rule by rule: inner pairs first, each rule reads the whole
// text of its pair. Exact cleaning only.
class LiteralNestedTables {
public:
    static std::u16string convert(const std::u16string& text) { return LiteralNestedTables(text, 0).converted(); }

private:
    enum class Kind { word, table, apart };
    struct Token {
        Kind kind;
        std::size_t begin, end;
        std::u16string letters, number;
        std::u16string replaced = {};  // tables and apart texts
    };
    struct Change {
        std::size_t begin, end;
        int order;  // of changes at one place: 0 ends a word, 1 follows it, 2 precedes the next, 3 changes it
        std::u16string text;
        bool apart;
    };
    static constexpr std::size_t npos = std::u16string::npos;

    LiteralNestedTables(std::u16string text, std::size_t level) : text_(std::move(text)), level_(level) {
        for (std::size_t at = 0; at < text_.size();) at = readToken(at);
    }

    std::u16string converted() {
        for (const Token& token : tokens_) {
            if (token.kind != Kind::word) change(token.begin, token.end, 3, token.replaced);
        }
        for (std::size_t i = 0; level_ > 0 && i < tokens_.size(); ++i) applyRules(i);
        if (level_ > 1) setUpStart();
        return applied();
    }

    void applyRules(std::size_t i) {
        const Token& token = tokens_[i];
        if (token.kind == Kind::table) {
            if (isClosed(i)) change(token.begin, token.begin, 2, u"\\par");
            setUpBehind(i, true, token.end);
        }
        if (is(i, u"cell") && level_ > 1) change(token.begin + 1, token.begin + 1, 2, u"nest");
        if (is(i, u"intbl") && text_.compare(token.end, 5, u"\\itap") != 0) change(token.end, token.end, 1, itap());
        if (is(i, u"itap")) setLevel(token);
        if (is(i, u"par") || is(i, u"pard")) setParagraph(i);
        if (isRow(i) && level_ > 1) nestRow(i);
    }

    // ---- Text

    std::u16string digit() const { return std::u16string(1, static_cast<char16_t>(u'0' + level_)); }
    std::u16string itap() const { return u"\\itap" + digit(); }
    std::u16string inTable() const { return u"\\intbl" + itap(); }
    bool is(std::size_t i, std::u16string_view letters) const {
        return i < tokens_.size() && tokens_[i].kind == Kind::word && tokens_[i].letters == letters;
    }
    bool isRow(std::size_t i) const { return is(i, u"row") || is(i, u"nestrow"); }
    bool isCell(std::size_t i) const { return is(i, u"cell") || is(i, u"nestcell"); }
    char16_t at(std::size_t i) const { return i < text_.size() ? text_[i] : u'\0'; }

    void change(std::size_t begin, std::size_t end, int order, std::u16string text, bool apart = false) {
        changes_.push_back({begin, end, order, std::move(text), apart});
    }

    std::u16string applied() {
        std::stable_sort(changes_.begin(), changes_.end(), [](const Change& a, const Change& b) {
            return std::pair(a.begin, a.order) < std::pair(b.begin, b.order);
        });
        TextEdits edits;
        for (const Change& c : changes_) {
            if (c.text.empty()) {
                edits.cut(c.begin, c.end);
            } else if (c.apart) {
                edits.replaceApartVal(c.begin, c.end, c.text);
            } else {
                edits.replace(c.begin, c.end, c.text);
            }
        }
        edits.apply(text_);
        return text_;
    }
    static std::u16string convertedPart(std::u16string text, std::size_t level) {
        return LiteralNestedTables(std::move(text), level).converted();
    }

    // ---- Reading

    std::size_t readToken(std::size_t begin) {
        if (const std::size_t end = pairEnd(begin)) {
            const std::size_t inner = markerEnd(begin), close = text_.rfind(endTableMarker, end - 1);
            const std::size_t level = std::min<std::size_t>(level_ + 1, 9);
            const std::u16string table = convertedPart(text_.substr(inner, close - inner), level);
            tokens_.push_back({Kind::table, begin, end, u"", u""});
            tokens_.back().replaced = text_.substr(begin, inner - begin) + table + text_.substr(close, end - close);
            return end;
        }
        if (text_[begin] == u'\\') {
            const ControlWord word = readWord(text_, begin);
            if (word.letters.empty()) return begin + 2;
            tokens_.push_back({Kind::word, begin, word.end, std::u16string(word.letters), std::u16string(word.number)});
            return word.end;
        }
        if (const std::size_t end = level_ > 0 && text_[begin] == u'{' ? apartEnd(begin) : 0) {
            tokens_.push_back({Kind::apart, begin, end, u"", u"", convertedPart(text_.substr(begin, end - begin), 0)});
            return end;
        }
        return begin + 1;
    }

    // The end of the marker at the place; 0 without one.
    std::size_t markerEnd(std::size_t begin) const {
        for (const std::u16string_view marker : {startTableMarker, endTableMarker}) {
            if (text_.compare(begin, marker.size() + 1, std::u16string(marker) + u"{") != 0) continue;
            const std::size_t close = text_.find_first_of(u"{}", begin + marker.size() + 1);
            if (close == npos || text_[close] == u'{') continue;
            return close + (at(close + 1) == u'}' ? 2 : 1);
        }
        return 0;
    }

    // The end of the table whose start marker is at the place; 0 without one.
    std::size_t pairEnd(std::size_t begin) {
        if (ended_ || isEscaped(text_, begin) || text_.compare(begin, startTableMarker.size(), startTableMarker) != 0)
            return 0;
        const std::size_t end = markerEnd(begin);
        if (end == 0) return 0;
        const std::size_t open = begin + startTableMarker.size();
        const std::u16string identity = text_.substr(open, text_.find(u'}', open) + 1 - open);
        std::size_t found = end - 1;
        do {
            found = text_.find(std::u16string(endTableMarker) + identity, found + 1);
        } while (found != npos && isEscaped(text_, found));
        ended_ = found == npos;
        return ended_ ? 0 : markerEnd(found);
    }

    std::size_t apartEnd(std::size_t begin) const {
        const std::size_t word = begin + (text_.compare(begin, 3, u"{\\*") == 0 ? 3 : 1);
        for (const std::u16string_view start : {u"\\footnote", u"\\nonesttables", u"\\header"}) {
            // The brace itself is the table's.
            const std::size_t end = findGroupEnd(text_, begin + 1, true);
            if (wordStandsAt(text_, word, start) && end != noGroupEnd) return end;
        }
        return 0;
    }

    // ---- Rules

    bool endsParagraph(std::size_t i) const {
        return is(i, u"par") || isCell(i) || isRow(i) || (tokens_[i].kind == Kind::table && isClosed(i));
    }
    // Whether the paragraph before the table is closed.
    bool isClosed(std::size_t i) const {
        for (std::size_t k = i; k-- > 0;) {
            if (tokens_[k].kind == Kind::table) return true;
            if (is(k, u"par") || isCell(k)) return showsText(textFrom(tokens_[k].end, i));
            if (isRow(k)) return showsText(textFrom(rowEnd(k), i));
        }
        return showsText(textFrom(0, i));
    }
    std::u16string textFrom(std::size_t begin, std::size_t i) const {
        return text_.substr(begin, tokens_[i].begin - begin);
    }
    // A blank after a row that is rewritten, or before its brace, belongs to it.
    std::size_t rowEnd(std::size_t i) const {
        const std::size_t end = tokens_[i].end;
        return end + (at(end) == u' ' && (isRewritten(i) || at(end + 1) == u'}') ? 1 : 0);
    }

    void setLevel(const Token& token) {
        if (!token.number.empty() && token.number[0] != u'-') {
            change(token.end - token.number.size(), token.end - token.number.size() + 1, 1, digit());
            return;
        }
        const bool hasInTable = token.begin >= 6 && text_.compare(token.begin - 6, 6, u"\\intbl") == 0;
        if (!hasInTable || at(token.end) != u'\\') change(token.begin, token.begin, 2, u"\\intbl");
        const char16_t next = at(token.end), second = at(token.end + 1);
        const bool white = next == u' ' || next == u'\r' || next == u'\n';
        const bool missed = second == u' ' || (second >= u'0' && second <= u'9');
        const std::size_t end = token.end + (token.number.empty() && white && !missed ? 1 : 0);
        change(token.end - token.number.size(), end, 1, digit());
    }

    void setParagraph(std::size_t i) {
        bool isLast = true;
        for (std::size_t k = i + 1; k < tokens_.size(); ++k) {
            isLast = isLast && !is(k, u"intbl") && tokens_[k].kind != Kind::table;
        }
        std::u16string words = isLast ? inTable() : u"";
        if (!isLast && is(i, u"pard")) words = wordsOfParagraph(i);
        if (!words.empty()) change(tokens_[i].end, tokens_[i].end, 1, words);
    }

    std::u16string wordsOfParagraph(std::size_t i) const {
        std::size_t end = i + 1;
        while (end < tokens_.size() && !endsParagraph(end)) {
            if (is(end, u"pard") || is(end, u"intbl")) return u"";
            ++end;
        }
        if (end == tokens_.size()) return u"";
        bool inRow = isCell(end) || isRow(end);
        for (std::size_t k = end; k-- > 0 && !isRow(k);) inRow |= is(k, u"trowd") || is(k, u"intbl") || isCell(k);
        const std::size_t level = inRow ? level_ : level_ - 1;
        return level == 0 ? u"" : u"\\intbl\\itap" + std::u16string(1, static_cast<char16_t>(u'0' + level));
    }

    std::size_t behindBraces(std::size_t begin) const {
        std::size_t end = begin;
        for (std::size_t i = begin; at(i) == u'}' || at(i) == u'\r' || at(i) == u'\n'; ++i) {
            if (at(i) == u'}') end = i + 1;
        }
        return end;
    }

    void setUpStart() {
        if (lacksLevel(0)) change(0, 0, 1, inTable(), true);
    }
    bool lacksLevel(std::size_t i) const {
        for (; i < tokens_.size(); ++i) {
            if (is(i, u"pard") || is(i, u"intbl") || is(i, u"itap")) return false;
            if (endsParagraph(i)) return true;
        }
        return false;
    }

    // After a table in any case, after a row if words set up the paragraph.
    void setUpBehind(std::size_t i, bool isTable, std::size_t end) {
        const std::size_t place = behindBraces(end);
        bool needed = false;
        for (std::size_t k = i + 1; k < tokens_.size() && !needed && !is(k, u"pard"); ++k) {
            needed = endsParagraph(k);
            if (!isTable && tokens_[k].kind == Kind::table && !needed) break;
        }
        std::u16string words;
        std::size_t defaults = i + 1;
        while (defaults-- > 0 && !is(defaults, u"pard")) continue;
        if (defaults != npos) words = paragraphWords(text_, tokens_[defaults].begin);
        if (needed && (isTable || !words.empty())) {
            change(place, place, 1, u"\\pard" + words + inTable(), true);
        } else if (!isTable && lacksLevel(i + 1)) {
            change(place, place, 1, inTable(), true);
        }
    }

    // ---- Rows

    std::size_t rowBegin(std::size_t i) const {
        while (i > 0 && !isRow(i - 1)) --i;
        return i;
    }
    bool isDone(std::size_t definition) const { return tables::isNestedDefinition(text_, tokens_[definition].begin); }
    // The definition of a row: the last of those that are in their group already, else its last one,
    // else that of the row before.
    std::size_t definitionOf(std::size_t row) const {
        const std::size_t begin = rowBegin(row);
        for (const bool done : {true, false}) {
            for (std::size_t i = row; i-- > begin;) {
                if (is(i, u"trowd") && isDone(i) == done) return i;
            }
        }
        return begin == 0 ? npos : definitionOf(begin - 1);
    }
    std::size_t cellsOf(std::size_t row) const {
        std::size_t cells = 0, nested = 0;
        for (std::size_t i = rowBegin(row); i < row; ++i) {
            cells += is(i, u"cell");
            nested += is(i, u"nestcell");
        }
        return cells != 0 ? cells : nested;
    }
    bool isRewritten(std::size_t row) const {
        if (level_ < 2) return false;
        const std::size_t definition = definitionOf(row);
        if (definition == npos) return cellsOf(row) != 0;
        return definition < rowBegin(row) || !isDone(definition);
    }

    RowDefinition read(std::size_t definition) const {
        std::size_t limit = text_.size();
        for (std::size_t k = tokens_.size(); k-- > definition;) {
            if (tokens_[k].kind == Kind::table) limit = tokens_[k].begin;
        }
        return rowDefinitionAt(text_, tokens_[definition].begin, limit);
    }

    void nestRow(std::size_t row) {
        const Token& token = tokens_[row];
        const std::size_t end = rowEnd(row);
        if (is(row, u"row")) change(token.begin + 1, token.begin + 1, 2, u"nest");
        setUpBehind(row, false, end);
        if (!isRewritten(row)) return;
        const std::size_t definition = definitionOf(row);
        RowDefinition read;
        std::u16string moved = u"\\trowd";
        if (definition != npos) {
            read = this->read(definition);
            moved = text_.substr(read.range.begin, read.range.end - read.range.begin);
        }
        for (std::size_t i = rowBegin(row); i < row; ++i) {
            if (!is(i, u"trowd")) continue;
            const RowDefinition cut = this->read(i);
            change(cut.range.begin, cut.range.end, 2, u"");
        }
        std::size_t right = read.columns == 0 ? 0 : nestedWords::numberOf(readWord(text_, read.lastColumn).number);
        for (std::size_t column = read.columns; column < cellsOf(row); ++column) {
            right += 1440;
            const std::string digits = std::to_string(right);
            moved += u"\\cellx" + std::u16string(digits.begin(), digits.end());
        }
        const std::size_t keep = row == 0 ? npos : tokens_[row - 1].begin;
        if (row > 0 && is(row - 1, u"trkeep") && keep + 7 == token.begin && read.range.end <= keep) {
            change(keep, token.begin, 2, u"");
            moved += u"\\trkeep";
        }
        change(token.begin, token.begin, 2, u"\\pard" + inTable() + u"\\nowidctlpar{\\*\\nesttableprops" + moved);
        change(end, end, 0, u"}");
    }

    std::u16string text_;
    std::size_t level_;
    std::vector<Token> tokens_;
    std::vector<Change> changes_;
    bool ended_ = false;
};

}  // namespace velmor::test
