#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// The entries of a table such as {\fonttbl...} or {\stylesheet...}: its groups, and, in tables whose entries
// are not groups, the texts that end with ";". White space between entries is skipped.
class TableEntries {
public:
    // `table` is the whole group; `from` is the end of its opening word.
    TableEntries(std::u16string_view table, std::size_t from, bool tolerant) noexcept
        : table_(table.substr(0, table.size() - 1)), at_(from), tolerant_(tolerant) {}

    // Moves to the next entry; false at the end.
    bool next() noexcept {
        at_ = skipWhiteSpace(table_, at_);
        if (at_ >= table_.size()) return false;
        isGroup_ = table_[at_] == u'{';
        return isGroup_ ? nextGroup() : nextRun();
    }

    // With its braces, or without its ";".
    std::u16string_view text() const noexcept { return table_.substr(range_.begin, range_.end - range_.begin); }
    bool isGroup() const noexcept { return isGroup_; }

private:
    bool nextGroup() noexcept {
        const std::size_t end = findGroupEnd(table_, at_ + 1, tolerant_);
        if (end == noGroupEnd) return false;
        range_ = {at_, end + 1};
        at_ = end + 1;
        return true;
    }

    bool nextRun() noexcept {
        range_.begin = at_;
        while (at_ < table_.size() && table_[at_] != u';') {
            if (table_[at_] == u'\\') {
                at_ += 2;
            } else if (table_[at_] == u'{') {
                const std::size_t end = findGroupEnd(table_, at_ + 1, tolerant_);
                if (end == noGroupEnd) return false;
                at_ = end + 1;
            } else {
                ++at_;
            }
        }
        range_.end = std::min(at_, table_.size());
        ++at_;
        return true;
    }

    std::u16string_view table_;
    std::size_t at_;
    bool tolerant_;
    TextRange range_;
    bool isGroup_ = false;
};

// The direct content of an entry, from left to right: words, inner groups, and units of text (an escape is
// one). Indices count from the start of the entry.
class EntryItems {
public:
    enum class Kind { word, group, text };

    EntryItems(std::u16string_view entry, bool tolerant) noexcept : entry_(entry), tolerant_(tolerant) {
        if (entry_.substr(0, 1) != u"{") return;
        entry_.remove_suffix(1);
        at_ = 1;
    }

    bool next() noexcept {
        begin_ = at_;
        if (at_ >= entry_.size()) return false;
        kind_ = Kind::text;
        if (entry_[at_] == u'{') {
            kind_ = Kind::group;
            const std::size_t end = findGroupEnd(entry_, at_ + 1, tolerant_);
            at_ = end == noGroupEnd ? entry_.size() : end + 1;
        } else if (entry_[at_] == u'\\') {
            readEscape();
        } else {
            ++at_;
        }
        return true;
    }

    Kind kind() const noexcept { return kind_; }
    const ControlWord& word() const noexcept { return word_; }  // of a word
    std::size_t begin() const noexcept { return begin_; }
    std::size_t end() const noexcept { return at_; }  // after the blank that ends a word
    std::u16string_view text() const noexcept { return entry_.substr(begin_, at_ - begin_); }
    // The ";" after the name.
    bool endsName() const noexcept { return kind_ == Kind::text && entry_[begin_] == u';'; }

private:
    void readEscape() noexcept {
        word_ = readWord(entry_, at_);
        if (!word_.letters.empty()) {
            kind_ = Kind::word;
            at_ = endWithBlank(entry_, word_);
        } else {
            const bool isByte = standsAt(entry_, at_, u"\\'");
            at_ = std::min(entry_.size(), at_ + (isByte ? 4u : 2u));
        }
    }

    std::u16string_view entry_;
    std::size_t begin_ = 0;
    std::size_t at_ = 0;
    bool tolerant_;
    Kind kind_ = Kind::text;
    ControlWord word_;
};

}  // namespace velmor
