#include "rtf/merge/FontTable.h"

#include "rtf/merge/TableEntries.h"

namespace velmor {
namespace {

struct FontEntry {
    std::size_t number = 0;  // the place of its digits
    std::u16string_view digits;
    std::u16string_view characterSet;
    TextRange characterSetWord;
    std::u16string name;
    bool isEnded = false;
};

FontEntry readFontEntry(std::u16string_view entry, bool tolerant) {
    FontEntry font;
    for (EntryItems items(entry, tolerant); items.next();) {
        if (items.endsName()) {
            font.isEnded = true;
            break;
        }
        if (items.kind() == EntryItems::Kind::group) continue;
        const ControlWord& word = items.word();
        if (items.kind() == EntryItems::Kind::text) {
            if (items.text() != u"\r" && items.text() != u"\n") font.name += items.text();
        } else if (word.letters == u"f" && !word.number.empty()) {
            if (!font.digits.empty()) continue;
            font.number = word.numberBegin();
            font.digits = word.number;
        } else if (word.letters == u"fcharset") {
            font.characterSet = word.number;
            font.characterSetWord = {word.begin, word.end};
        } else if (word.letters == u"u") {
            font.name += items.text();
        }
    }
    return font;
}

// The key of a font: its name, or its entry if it has no name.
std::u16string keyOf(const FontEntry& font, std::u16string_view entry, bool tolerant) {
    std::u16string key = font.name;
    if (key.empty()) key.append(1, u'\1').append(entry.substr(font.number + font.digits.size()));
    if (tolerant) key.append(1, u'\0').append(font.characterSet);
    return key;
}

// The entry with the given character set, if it names none or 1, which means that of the document's code page.
std::u16string inCharacterSet(std::u16string_view entry, std::u16string_view characterSet, bool tolerant) {
    const FontEntry font = readFontEntry(entry, tolerant);
    std::u16string result(entry);
    if (font.digits.empty() || !(font.characterSet.empty() || font.characterSet == u"1")) return result;
    const TextRange named = font.characterSetWord;
    if (named.end != 0) result.erase(named.begin, named.end - named.begin);
    const std::size_t at = named.end != 0 ? named.begin : font.number + font.digits.size();
    return result.insert(at, std::u16string(u"\\fcharset").append(characterSet));
}

}  // namespace

void FontTable::add(std::u16string_view table, NumberMap& numbers, std::u16string_view characterSet) {
    constexpr std::u16string_view opening = u"{\\fonttbl";
    for (TableEntries entries(table, opening.size(), tolerant_); entries.next();) {
        std::u16string_view entry = entries.text();
        std::u16string changed;
        if (!characterSet.empty()) entry = changed = inCharacterSet(entry, characterSet, tolerant_);
        const FontEntry font = readFontEntry(entry, tolerant_);
        if (font.digits.empty()) continue;
        const auto next = static_cast<std::int32_t>(numbers_.size());
        const auto [known, isNew] = numbers_.emplace(keyOf(font, entry, tolerant_), next);
        numbers.set(font.digits, known->second);
        if (!isNew) continue;
        const std::u16string_view opened = entries.isGroup() ? u"" : u"{";
        if (entries.isGroup()) entry.remove_suffix(1);
        entries_.append(u"\r\n").append(opened).append(entry, 0, font.number).append(decimal(next));
        entries_.append(entry.substr(font.number + font.digits.size())).append(font.isEnded ? u"}" : u";}");
    }
}

}  // namespace velmor
