#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "rtf/edit/CleanOptions.h"
#include "rtf/merge/MergeReport.h"
#include "rtf/merge/NumberMap.h"
#include "rtf/merge/TableEntries.h"

namespace velmor {

// The fonts of all documents of a run, in order of first appearance, numbered from 0. Fonts of equal name
// (without regard to case) are one font, and the first entry is kept; tolerant merging keeps those of different
// character sets apart, and keeps the numbers of the host's theme fonts, which programs know by their numbers.
class FontTable {
public:
    static constexpr std::u16string_view opening = u"{\\fonttbl";

    explicit FontTable(const CleanOptions& options) noexcept : tolerant_(options.tolerant) {}

    // Adds the fonts of a document's table, "{\fonttbl" to its brace; `numbers` receives the new
    // number of each, and `report`, unless it is null, what became of it. Fonts without a character set get the given
    // one, unless that is empty.
    void add(std::u16string_view table, NumberMap& numbers, std::u16string_view characterSet = {},
             MergeReport* report = nullptr) {
        const bool isHost = numbers_.empty();
        for (TableEntries entries(table, opening.size(), tolerant_); entries.next();) {
            std::u16string_view entry = entries.text();
            std::u16string changed;
            if (!characterSet.empty()) entry = changed = inCharacterSet(entry, characterSet);
            const FontEntry font = readFontEntry(entry);
            const std::u16string_view own = font.number.number;
            if (own.empty()) continue;
            const auto [number, isNew] = settle(keyOf(font, entry), own, isHost);
            numbers.set(own, number);
            if (report != nullptr) report->add(&MergeReport::Document::fonts, font.name, own, decimal(number), isNew);
            if (!isNew) continue;
            const std::u16string_view opened = entries.isGroup() ? u"" : u"{";
            if (entries.isGroup()) entry.remove_suffix(1);
            entries_.append(u"\r\n").append(opened).append(entry, 0, font.number.numberBegin());
            entries_.append(decimal(number)).append(entry.substr(font.number.end)).append(font.isEnded ? u"}" : u";}");
        }
    }

    bool empty() const noexcept { return numbers_.empty(); }

    // Whether a further document can add a font with this number.
    bool canAdd(std::int32_t number) const noexcept {
        return number >= nextNumber_ && !(tolerant_ && isThemeFont(number));
    }

    // The merged table.
    std::u16string text() const { return std::u16string(opening) + entries_ + u"}"; }

private:
    struct FontEntry {
        ControlWord number, characterSet;
        std::u16string name;
        bool isEnded = false;
    };

    FontEntry readFontEntry(std::u16string_view entry) const {
        FontEntry font;
        for (EntryItems items(entry, tolerant_); items.next();) {
            if (items.endsName()) {
                font.isEnded = true;
                break;
            }
            if (items.kind() == EntryItems::Kind::group) continue;
            const ControlWord& word = items.word();
            if (items.kind() == EntryItems::Kind::text) {
                if (items.text() != u"\r" && items.text() != u"\n") font.name += items.text();
            } else if (word.letters == u"f" && !word.number.empty()) {
                if (font.number.number.empty()) font.number = word;
            } else if (word.letters == u"fcharset") {
                font.characterSet = word;
            } else if (word.letters == u"u") {
                font.name += items.text();
            }
        }
        return font;
    }

    // The key of a font: its name, or its entry if it has no name.
    std::u16string keyOf(const FontEntry& font, std::u16string_view entry) const {
        std::u16string key = font.name;
        if (key.empty()) key.append(1, u'\1').append(entry.substr(font.number.end));
        if (tolerant_) key.append(1, u'\0').append(font.characterSet.number);
        return key;
    }

    // The entry with the given character set, if it names none or 1, which means that of the document's code page.
    std::u16string inCharacterSet(std::u16string_view entry, std::u16string_view characterSet) const {
        const FontEntry font = readFontEntry(entry);
        const ControlWord& named = font.characterSet;
        std::u16string result(entry);
        if (font.number.number.empty() || !(named.number.empty() || named.number == u"1")) return result;
        result.erase(named.begin, named.end - named.begin);
        const std::size_t at = named.end != 0 ? named.begin : font.number.end;
        return result.insert(at, std::u16string(u"\\fcharset").append(characterSet));
    }

    // The fonts of a theme have these numbers in every document that has a theme.
    static constexpr std::int32_t firstThemeFont = 31500, lastThemeFont = 31507;

    static bool isThemeFont(std::int32_t number) noexcept {
        return number >= firstThemeFont && number <= lastThemeFont;
    }

    // The number of a font, and whether it is new.
    std::pair<std::int32_t, bool> settle(const std::u16string& key, std::u16string_view digits, bool isHost) {
        if (const std::int32_t number = numberOf(digits); tolerant_ && isThemeFont(number)) {
            const std::u16string themeKey = (key + u'\1').append(digits);
            const auto known = numbers_.find(themeKey);
            if (known != numbers_.end()) return {known->second, false};
            if (isHost) {
                numbers_.emplace(themeKey, number);
                numbers_.emplace(key, number);
                return {number, true};
            }
        }
        const auto [known, isNew] = numbers_.emplace(key, nextNumber_);
        if (isNew && ++nextNumber_ == firstThemeFont && tolerant_) nextNumber_ = lastThemeFont + 1;
        return {known->second, isNew};
    }

    bool tolerant_;
    NameIndex numbers_;
    std::int32_t nextNumber_ = 0;
    std::u16string entries_;
};

}  // namespace velmor
