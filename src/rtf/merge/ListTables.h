#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TextEdits.h"
#include "rtf/merge/FreshNumbers.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/TableEntries.h"

namespace velmor {

// The lists and list overrides of all documents of a run. Documents share no list, so each document counts for
// itself. The host's lists keep their numbers; those of other documents get new list ids, template ids and
// override numbers. docs/cleaning.md has the rules.
//
// A document's tables are read first, to determine the numbers, and added when their references to styles have
// the numbers of the merged document.
class ListTables {
public:
    explicit ListTables(const CleanOptions& options) noexcept : tolerant_(options.tolerant), report_(options.report) {}

    // Readers number the lists that paragraphs describe themselves ({\*\pn...}) from 1, as if they were in the tables.
    // Before the host: no list of another document gets a number up to the given one.
    void leaveOut(std::int32_t number) noexcept;

    // The host is first.
    void beginDocument(bool host);

    // "{\*\listtable" or "{\listtable" to its brace; then the same of "listoverridetable".
    void readLists(std::u16string_view table);
    void readOverrides(std::u16string_view table);

    void addLists(std::u16string_view table);
    void addOverrides(std::u16string_view table);

    // The number of the document's list override; NumberMap::none when the reference stays.
    std::int32_t numberOf(std::u16string_view override);

    bool hasLists() const noexcept { return !lists_.empty(); }
    bool hasOverrides() const noexcept { return !overrides_.empty(); }
    std::u16string listTable() const;
    std::u16string overrideTable() const { return u"{\\*\\listoverridetable" + overrides_ + u"}"; }

private:
    struct List {
        std::u16string id, templateId;
    };

    std::u16string settle(FreshNumbers& numbers, std::u16string_view number) const;
    template <typename Replace>
    std::u16string renumbered(std::u16string_view entry, Replace replace);
    void addList(std::u16string_view entry, const List& list);
    void renumberPictures(std::u16string_view entry, const EntryItems& level, TextEdits& edits) const;
    void addOverride(std::u16string_view entry, std::u16string_view number);
    void addPictures(std::u16string_view entry);
    std::u16string_view idOf(std::u16string_view id);

    bool tolerant_;
    MergeReport* report_;
    bool host_ = true;
    bool hasTables_ = false;

    FreshNumbers ids_, templateIds_, overrideNumbers_;
    std::u16string lists_, overrides_, pictures_;
    std::size_t pictureCount_ = 0;

    // Of the current document.
    std::vector<List> settledLists_;
    std::vector<std::u16string> settledOverrides_;
    std::unordered_map<std::u16string, std::u16string> idsOfDocument_;
    NumberMap overridesOfDocument_;
    std::size_t firstPicture_ = 0;
};

}  // namespace velmor
