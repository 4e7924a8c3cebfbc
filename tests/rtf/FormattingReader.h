#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "RtfText.h"
#include "rtf/merge/TableEntries.h"
#include "text/Compare.h"

namespace velmor::test {

// Reads text and tables of a document as a word processor does: each unit of text with the name of its
// font, the values of its colours, its list and its styles, resolved through the document's tables.
// Independent of the code that merges documents.
class FormattingReader : public RtfText {
public:
    struct Unit {
        char16_t unit;
        std::u16string look;
    };

    // The text of a part, and the look of each unit: part 0 is the outermost document, 1 the first in it.
    // Without `withNormal` the style of paragraphs without a style is left out.
    static std::vector<Unit> read(const std::u16string& document, int part, bool withNormal) {
        FormattingReader reader(document);
        reader.part_ = part;
        reader.withNormal_ = withNormal;
        reader.RtfText::read();
        return std::move(reader.units_);
    }

    // Whether the document defines the style of paragraphs without a style.
    static bool definesNormal(const std::u16string& document) {
        return FormattingReader(document).styles_.count(u"s0") != 0;
    }

private:
    using Values = std::map<std::u16string, std::u16string>;
    using Words = std::set<std::u16string, std::less<>>;

    // An entry of a table, without its inner groups: each word's first number, and the text.
    struct Entry {
        Values numbers;
        std::u16string words, name, all;

        const std::u16string* number(const std::u16string& word) const {
            const auto found = numbers.find(word);
            return found == numbers.end() ? nullptr : &found->second;
        }
    };

    explicit FormattingReader(const std::u16string& text) : RtfText(text, Later()), text_(text) {
        forEachEntry(u"{\\fonttbl", [&](const Entry& font) {
            if (const auto* number = font.number(u"f")) fonts_.emplace(*number, plainName(font.name));
        });
        forEachEntry(u"{\\colortbl", [&](const Entry& colour) { colours_.push_back(colour.words); });
        readLists();
        forEachEntry(u"{\\stylesheet", [&](const Entry& style) {
            for (const std::u16string kind : {u"s", u"cs", u"ts", u"ds"}) {
                const auto* number = style.number(kind);
                if (number != nullptr) return void(styles_.emplace(kind + *number, style));
            }
            if (!style.all.starts_with(u"{\\*")) styles_.emplace(u"s0", style);
        });
    }

    static std::u16string plainName(std::u16string name) {
        const std::size_t suffix = name.rfind(u" (");
        if (suffix != name.npos && name.back() == u')') name.resize(suffix);
        return lowerCase(name);
    }

    template <typename Take>
    void forEachEntry(std::u16string_view opening, Take take) const {
        const auto table = findTableGroup(text_, opening, true);
        if (!table) return;
        const std::u16string_view text(text_);
        for (TableEntries entries(text.substr(table->begin, table->end - table->begin), opening.size(), true);
             entries.next();) {
            Entry entry;
            entry.all = entries.text();
            for (EntryItems items(entries.text(), true); items.next() && !items.endsName();) {
                if (items.kind() == EntryItems::Kind::text) {
                    if (items.text() != u"\\*" && items.text() >= u" ") entry.name += items.text();
                } else if (items.kind() == EntryItems::Kind::word) {
                    const ControlWord& word = items.word();
                    entry.numbers.emplace(word.letters, word.number);
                    const bool saysNothing = word.number == u"0" &&
                                             (word.letters == u"sb" || word.letters == u"sa" || word.letters == u"sl");
                    if (saysNothing || word.letters == u"styrsid") continue;
                    entry.words.append(u"\\").append(word.letters).append(word.number);
                }
            }
            take(entry);
        }
    }

    void readLists() {
        Values lists;
        for (const std::u16string opening : {u"{\\*\\listtable", u"{\\listtable"}) {
            forEachEntry(opening, [&](const Entry& list) {
                if (const auto* id = list.number(u"listid")) lists.emplace(*id, levels(list.all));
            });
        }
        for (const std::u16string opening : {u"{\\*\\listoverridetable", u"{\\listoverridetable"}) {
            forEachEntry(opening, [&](const Entry& override) {
                const auto *id = override.number(u"listid"), *number = override.number(u"ls");
                if (id == nullptr || number == nullptr) return;
                const auto list = lists.find(*id);
                overrides_.emplace(*number, list == lists.end() ? u"?" : list->second);
            });
        }
    }

    // A list's definition without its identifiers and with resolved references.
    std::u16string levels(const std::u16string& list) const {
        std::u16string result;
        for (std::size_t at = 0; at < list.size();) {
            if (list[at] != u'\\' || !isLetter(list[at + 1])) {
                if (!isWhiteSpace(list[at])) result += list[at];
                ++at;
                continue;
            }
            const ControlWord word = readWord(list, at);
            at = word.end;
            result.append(u"\\").append(word.letters);
            const bool isIdentity = word.letters.starts_with(u"list") || word.letters == u"s" || word.letters == u"cf";
            if (!isIdentity) result += valueOf(std::u16string(word.letters), std::u16string(word.number));
        }
        return result;
    }

    // A style says all of its look itself, whatever it is based on.
    std::u16string styleLook(const std::u16string& kind, const std::u16string& number) const {
        const auto style = styles_.find(kind + number);
        // Number 0 exists without a definition.
        const std::u16string font = kind == u"s" ? u"\\f" + valueOf(u"f", fontOfStyle(number)) : u"";
        if (style == styles_.end()) return number == u"0" ? u"normal<" + font + u">" : u"?";
        const std::u16string look = font + resolved(style->second.words, kind == u"s");
        return plainName(style->second.name) + u"<" + look + u">";
    }

    // A style "Normal" that says nothing but its font is the same as none.
    static bool isBareNormal(std::u16string_view look) {
        return look.substr(0, 9) == u"normal<\\f" && look.find(u'\\', 9) == look.npos;
    }

    // A paragraph style that names no font has that of the style that it is based on; the first has the default font.
    std::u16string fontOfStyle(std::u16string number) const {
        for (std::size_t level = 0; level < styles_.size(); ++level) {
            const auto style = styles_.find(u"s" + number);
            if (style == styles_.end()) break;
            if (const auto* font = style->second.number(u"f")) return *font;
            const auto* base = style->second.number(u"sbasedon");
            if (base == nullptr) break;
            number = *base;
        }
        return defaultFont_;
    }

    // The words of a style, with references resolved or left out.
    std::u16string resolved(const std::u16string& words, bool withoutFont) const {
        static const Words left = {u"s", u"cs", u"ds", u"ts", u"sbasedon", u"snext", u"slink"};
        std::u16string result;
        for (std::size_t at = 0; at < words.size();) {
            const ControlWord word = readWord(words, at);
            at = word.end;
            if (left.count(word.letters) != 0 || (withoutFont && word.letters == u"f")) continue;
            result.append(u"\\").append(word.letters);
            result += valueOf(std::u16string(word.letters), std::u16string(word.number));
        }
        return result;
    }

    static const Words& colourWords() {
        static const Words words = {u"cf", u"cb", u"highlight", u"chcbpat", u"chcfpat", u"brdrcf", u"ulc", u"clcbpat"};
        return words;
    }

    static std::u16string found(const Values& values, const std::u16string& number, std::u16string_view otherwise) {
        const auto value = values.find(number);
        return value == values.end() ? std::u16string(otherwise) : value->second;
    }

    std::u16string valueOf(const std::u16string& word, const std::u16string& number) const {
        if (word == u"f" || word == u"af") return found(fonts_, number, u"?");
        if (colourWords().count(word) != 0) {
            const std::size_t index =
                number.empty() || number.size() > 5 ? 0 : std::stoul(std::string(number.begin(), number.end()));
            return index < colours_.size() ? colours_[index] : u"?";
        }
        if (word == u"ls") return found(overrides_, number, u"");
        if (word == u"s" || word == u"cs") return styleLook(word, number);
        return number;
    }

    void note(std::u16string_view word, std::u16string_view number) override {
        static const Words kept = {u"f", u"s", u"cs", u"ls"};
        Values& values = group().values;
        if (word == u"rtf") {
            // A document begins with defaults, wherever it is.
            values = {{u"f", defaultFont_}, {u"s", u"0"}};
            group().part = documents_++;
            group().skipped = false;
        } else if (word == u"deff") {
            defaultFont_ = values[u"f"] = number;
        } else if (word == u"pard") {
            values[u"s"] = u"0";
            values.erase(u"ls");
        } else if (word == u"plain") {
            for (const std::u16string& colour : colourWords()) values.erase(colour);
            values.erase(u"cs");
            values[u"f"] = defaultFont_;
        } else if (!number.empty() && (kept.count(word) != 0 || colourWords().count(word) != 0)) {
            values[std::u16string(word)] = number;
        }
    }

    void see(char16_t unit) override {
        const Values& values = group().values;
        if (isWhiteSpace(unit) || group().part != part_) return;
        auto look = looks_.find(values);
        if (look == looks_.end()) {
            std::u16string text;
            for (const auto& [word, number] : values) {
                if (word == u"s" && number == u"0" && !withNormal_) continue;
                const std::u16string value = valueOf(word, number);
                if (!isBareNormal(value)) text += word + u"=" + value + u" ";
            }
            look = looks_.emplace(values, text).first;
        }
        units_.push_back({unit, look->second});
    }

    const std::u16string& text_;
    Values fonts_, overrides_;  // overrides: to the definition of the list
    std::vector<std::u16string> colours_;
    std::map<std::u16string, Entry> styles_;  // by kind and number
    std::map<Values, std::u16string> looks_;
    std::vector<Unit> units_;
    int documents_ = 0;
    int part_ = 0;
    bool withNormal_ = true;
    std::u16string defaultFont_ = u"0";
};

}  // namespace velmor::test
