#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "rtf/read/RtfReader.h"

namespace velmor {

// The range of the first unescaped group with this opening (without regard to case), including its closing
// brace; nothing when it is absent or never closed.
std::optional<TextRange> findTableGroup(std::u16string_view text, std::u16string_view opening, bool tolerant);

// The entries of a table such as {\fonttbl...} or {\stylesheet...}: its groups, and, in tables whose entries
// are not groups, the texts that end with ";". White space between entries is skipped.
class TableEntries {
public:
    // `table` is the whole group; `from` is the end of its opening word.
    TableEntries(std::u16string_view table, std::size_t from, bool tolerant) noexcept
        : table_(table.substr(0, table.size() - 1)), at_(from), tolerant_(tolerant) {}

    // Moves to the next entry; false at the end.
    bool next() noexcept;

    // With its braces, or without its ";".
    std::u16string_view text() const noexcept { return table_.substr(range_.begin, range_.end - range_.begin); }
    bool isGroup() const noexcept { return isGroup_; }

private:
    bool nextGroup() noexcept;
    bool nextRun() noexcept;

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

    EntryItems(std::u16string_view entry, bool tolerant) noexcept;

    bool next() noexcept;

    Kind kind() const noexcept { return kind_; }
    const ControlWord& word() const noexcept { return word_; }  // of a word
    std::size_t begin() const noexcept { return begin_; }
    std::size_t end() const noexcept { return at_; }  // after the blank that ends a word
    std::u16string_view text() const noexcept { return entry_.substr(begin_, at_ - begin_); }
    // The ";" after the name.
    bool endsName() const noexcept { return kind_ == Kind::text && entry_[begin_] == u';'; }

private:
    void readEscape() noexcept;

    std::u16string_view entry_;
    std::size_t begin_ = 0;
    std::size_t at_ = 0;
    bool tolerant_;
    Kind kind_ = Kind::text;
    ControlWord word_;
};

}  // namespace velmor
