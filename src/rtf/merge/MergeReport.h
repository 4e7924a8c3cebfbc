#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velmor {

// An entry of a document's table, and what became of it in the merged table.
struct MergedEntry {
    enum class Outcome : std::uint8_t {
        kept,     // the host's own
        shared,   // equal to one that was there before
        added,    // new
        renamed,  // new, under a name that was free
        direct,   // not added: its look became direct formatting of its text, which has the other style of the name
        replaced  // not added: its text has the other style of the name, and its look
    };

    Outcome outcome = Outcome::added;
    std::u16string name;     // as RTF writes it; of a colour its definition, of a list nothing
    std::u16string newName;  // other than `name` when renamed
    std::u16string number;
    std::u16string newNumber;
};

// What merging did with the tables of each document.
struct MergeReport {
    struct Document {
        std::vector<MergedEntry> fonts, colours, styles, lists, listOverrides;
    };

    // Of the last document: an entry that is new or shared.
    MergedEntry& add(std::vector<MergedEntry> Document::*table, std::u16string_view name, std::u16string_view number,
                     std::u16string_view newNumber, bool isNew) {
        using Outcome = MergedEntry::Outcome;
        const Outcome outcome = !isNew ? Outcome::shared : documents.size() == 1 ? Outcome::kept : Outcome::added;
        return (documents.back().*table)
            .emplace_back(MergedEntry{outcome, std::u16string(name), std::u16string(name), std::u16string(number),
                                      std::u16string(newNumber)});
    }

    std::vector<Document> documents;  // the host, then the lifted ones in the order of their openings
};

}  // namespace velmor
