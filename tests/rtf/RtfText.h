#pragma once

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/read/RtfReader.h"
#include "text/Encoding.h"

namespace velmor::test {

// The text that a reader of RTF shows, with "\n" for the ends of paragraphs, lines, cells and rows.
// Tables of the header, pictures and ignorable destinations are not text. Bytes are in the ANSI code
// page, whatever the document's code page is.
class RtfText {
public:
    enum class Part { all, body };  // body: no headers and footers

    explicit RtfText(std::u16string_view document, Part part = Part::all) : document_(document), part_(part) { read(); }

    const std::u16string& text() const { return text_; }
    // Of the braces; never below 0.
    bool isBalanced() const { return balanced_ && groups_.size() == 1; }

private:
    struct Group {
        bool skipped = false;
        int fallback = 1;  // units that replace one \u
    };

    void read() {
        while (at_ < document_.size()) {
            const char16_t unit = document_[at_];
            if (unit == u'{') {
                groups_.push_back(groups_.back());
                skip_ = 0;
                ++at_;
            } else if (unit == u'}') {
                balanced_ = balanced_ && groups_.size() > 1;
                if (groups_.size() > 1) groups_.pop_back();
                skip_ = 0;
                ++at_;
            } else if (unit == u'\\') {
                escape();
            } else {
                if (unit != u'\r' && unit != u'\n' && unit != u'\0') put(unit);
                ++at_;
            }
        }
    }

    void put(char16_t unit) {
        if (skip_ > 0) {
            --skip_;
        } else if (!groups_.back().skipped) {
            text_ += unit;
        }
    }

    void escape() {
        const char16_t next = at_ + 1 < document_.size() ? document_[at_ + 1] : u' ';
        if (isLetter(next)) return word();
        at_ += 2;
        if (next == u'\'') {
            const std::u16string_view digits = document_.substr(at_, 2);
            const auto byte = std::strtol(std::string(digits.begin(), digits.end()).c_str(), nullptr, 16);
            put(fromAnsi(std::string(1, static_cast<char>(byte)))[0]);
            at_ += 2;
        } else if (next == u'*') {
            groups_.back().skipped = true;
        } else if (next == u'\r' || next == u'\n') {
            put(u'\n');
        } else if (next != u'-' && next != u':' && next != u'|') {
            put(next == u'~' ? u' ' : next);
        }
    }

    void word() {
        const ControlWord word = readWord(document_, at_);
        at_ = word.end + standsAt(document_, word.end, u" ");
        const std::string digits(word.number.begin(), word.number.end());
        take(std::u16string(word.letters), digits.empty() ? 1 : std::atoi(digits.c_str()));
    }

    void take(const std::u16string& word, int number) {
        static const std::set<std::u16string> breaks = {u"par",      u"line",    u"cell", u"row",
                                                        u"nestcell", u"nestrow", u"sect", u"page"};
        static const std::set<std::u16string> silent = {u"fonttbl", u"colortbl",  u"stylesheet",        u"info",
                                                        u"pict",    u"listtable", u"listoverridetable", u"object",
                                                        u"filetbl", u"revtbl",    u"nonesttables"};
        static const std::set<std::u16string> pageParts = {u"header", u"headerf", u"headerl", u"headerr",
                                                           u"footer", u"footerf", u"footerl", u"footerr"};
        if (word == u"u") {
            put(static_cast<char16_t>(number));
            skip_ = groups_.back().fallback;
        } else if (word == u"uc") {
            groups_.back().fallback = number;
        } else if (word == u"bin") {
            at_ += static_cast<std::size_t>(std::max(number, 0));
        } else if (silent.count(word) != 0 || (part_ == Part::body && pageParts.count(word) != 0)) {
            groups_.back().skipped = true;
        } else if (word == u"tab") {
            put(u'\t');
        } else if (breaks.count(word) != 0) {
            put(u'\n');
        }
    }

    std::u16string_view document_;
    Part part_;
    std::size_t at_ = 0;
    std::u16string text_;
    std::vector<Group> groups_{Group{}};
    int skip_ = 0;
    bool balanced_ = true;
};

}  // namespace velmor::test
