#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "rtf/read/GroupSet.h"

namespace velmor {

// Tables that all documents of a run share; each has one place in the host's header.
enum class SharedTable : std::uint8_t { fonts, colours, styles, lists, listOverrides };

// The entries that one run of cleaning sets aside: the lifted documents ("RTF1", "RTF2", ... in order of their
// openings, so a document precedes those in it), and the shared tables. Each has a placeholder, a short text at
// the place to which it returns.
//
// A placeholder consists of a unit that occurs nowhere in the cleaned text, a number, and that unit again. So
// no text can look like one, whatever is removed or joined, and only entries of this run are put back.
class TableCollection {
public:
    struct Document {
        std::u16string text;  // a whole group, "{\rtf..." to its brace
        GroupSet groups;      // those of the text, without those of documents lifted from it
    };

    // `mark` occurs neither in the text nor in anything that will be stored.
    explicit TableCollection(char16_t mark) : mark_(mark) {}

    // Such a mark for a text: a noncharacter, or a private or unassigned unit if the text contains those. Nothing when
    // the text contains all of them.
    static std::optional<char16_t> unusedMark(std::u16string_view text);

    char16_t mark() const noexcept { return mark_; }

    // ---- The lifted documents, in order. References stay valid.

    std::deque<Document>& documents() noexcept { return documents_; }
    const std::deque<Document>& documents() const noexcept { return documents_; }
    // `index` as in documents().
    std::u16string placeholder(std::size_t index) const { return placeholderOf(tableCount + index); }

    // The placeholder at a mark in one of the texts of this run.
    struct Placeholder {
        std::size_t end;                      // the index after it
        std::optional<std::size_t> document;  // as in documents(); nothing for a shared table
    };
    Placeholder placeholderAt(std::u16string_view text, std::size_t index) const noexcept;

    // The groups in the host's own text.
    GroupSet& hostGroups() noexcept { return hostGroups_; }

    // ---- The shared tables.

    std::u16string placeholder(SharedTable table) const { return placeholderOf(static_cast<std::size_t>(table)); }
    // A table that is never stored leaves no text.
    void store(SharedTable table, std::u16string text) { tables_[static_cast<std::size_t>(table)] = std::move(text); }

    // ---- Putting back.

    // Replaces every placeholder, at every depth, by its entry; the collection is empty afterwards. Linear in
    // the result, no recursion. An entry within itself is left out. Works in the memory that the text had before
    // documents were lifted, if that is enough. Raises std::length_error beyond the limit of a string builder, or
    // std::bad_alloc; the text is then unchanged.
    void expand(std::u16string& psText);

private:
    static constexpr std::size_t tableCount = 5;

    class Parts;

    std::u16string placeholderOf(std::size_t number) const;
    const std::u16string* entry(std::size_t number) const noexcept;

    char16_t mark_;
    std::deque<Document> documents_;
    std::array<std::u16string, tableCount> tables_;
    GroupSet hostGroups_;
};

}  // namespace velmor
