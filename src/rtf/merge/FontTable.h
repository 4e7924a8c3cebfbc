#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/NumberMap.h"

namespace velmor {

// The fonts of all documents of a run, in order of first appearance, numbered from 0. Fonts of equal name
// (without regard to case) are one font, and the first entry is kept; tolerant merging keeps those of different
// character sets apart, and keeps the numbers of the host's theme fonts, which programs know by their numbers.
class FontTable {
public:
    explicit FontTable(const CleanOptions& options) noexcept : tolerant_(options.tolerant) {}

    // Adds the fonts of a document's table, "{\fonttbl" to its brace; `numbers` receives the new
    // number of each, and `report`, unless it is null, what became of it. Fonts without a character set get the given
    // one, unless that is empty.
    void add(std::u16string_view table, NumberMap& numbers, std::u16string_view characterSet = {},
             MergeReport* report = nullptr);

    bool empty() const noexcept { return numbers_.empty(); }
    // Whether a further document can add a font with this number.
    bool canAdd(std::int32_t number) const noexcept;

    // The merged table.
    std::u16string text() const { return u"{\\fonttbl" + entries_ + u"}"; }

private:
    std::pair<std::int32_t, bool> settle(const std::u16string& key, std::u16string_view digits, bool isHost);

    bool tolerant_;
    NameIndex numbers_;
    std::int32_t nextNumber_ = 0;
    std::u16string entries_;
};

}  // namespace velmor
