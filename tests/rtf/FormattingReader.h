#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/ControlWord.h"
#include "text/Compare.h"

namespace velmor::test {

// Reads a document as a word processor would, as far as text and the tables that it refers to go:
// each unit of text with the name of its font, the values of its colours, its list and its styles,
// all resolved through the document's tables. Knows nothing of how documents are merged.
class FormattingReader {
public:
    struct Unit {
        char16_t unit;
        std::u16string look;
    };

    // The text of a part, and what each unit looks like: part 0 is the outermost document, 1 the
    // first inside it. Without `withNormal` the style of paragraphs that name none is left out.
    static std::vector<Unit> read(const std::u16string& document, int part, bool withNormal) {
        FormattingReader reader(document);
        reader.withNormal_ = withNormal;
        reader.readTables();
        reader.readBody(part);
        return std::move(reader.units_);
    }

    // Whether paragraphs that name no style have one that the document defines.
    static bool definesNormal(const std::u16string& document) {
        FormattingReader reader(document);
        reader.readTables();
        return reader.styles_.count(u"s0") != 0;
    }

private:
    explicit FormattingReader(const std::u16string& text) : text_(text) {}

    struct State {
        std::map<std::u16string, std::u16string> words;  // the last number of each word of interest
        bool skipped = false;
        int part = 0;
    };

    static std::u16string plainName(std::u16string name) {
        const std::size_t suffix = name.rfind(u" (");
        if (suffix != name.npos && name.back() == u')') name.resize(suffix);
        std::transform(name.begin(), name.end(), name.begin(), lowerUnit);
        return name;
    }

    // Units of an escape; the groups of the text are balanced.
    std::size_t groupEnd(std::size_t at) const {
        int depth = 0;
        for (; at < text_.size(); ++at) {
            if (text_[at] == u'\\') {
                ++at;
            } else if (text_[at] == u'{') {
                ++depth;
            } else if (text_[at] == u'}' && --depth == 0) {
                return at + 1;
            }
        }
        return text_.size();
    }

    // A group without its inner groups, words with numbers put aside.
    struct Entry {
        std::map<std::u16string, std::u16string> numbers;
        std::u16string words, name, all;
    };

    Entry readEntry(std::size_t begin, std::size_t end) const {
        Entry entry;
        entry.all = text_.substr(begin, end - begin);
        std::size_t at = begin + (text_[begin] == u'{');
        while (at < end && text_[at] != u';') {
            if (text_[at] == u'{') {
                at = groupEnd(at);
            } else if (text_[at] == u'\\' && isLetter(text_[at + 1])) {
                const ControlWord word = readWord(text_, at);
                entry.numbers.emplace(word.letters, word.number);
                if (word.letters != u"styrsid") entry.words.append(u"\\").append(word.letters).append(word.number);
                at = word.end + (text_[word.end] == u' ');
            } else if (text_[at] == u'\\') {
                entry.name += text_.substr(at, 2);
                at += 2;
            } else {
                if (text_[at] >= u' ' && text_[at] != u'}') entry.name += text_[at];
                ++at;
            }
        }
        return entry;
    }

    template <typename Take>
    void forEachGroup(std::u16string_view opening, Take take) const {
        const std::size_t table = text_.find(opening);
        if (table == text_.npos) return;
        const std::size_t end = groupEnd(table);
        for (std::size_t at = table + opening.size(); at < end && (at = text_.find(u'{', at)) < end;) {
            const std::size_t next = groupEnd(at);
            take(readEntry(at, next));
            at = next;
        }
    }

    void readTables() {
        forEachGroup(u"{\\fonttbl", [&](const Entry& font) {
            const auto number = font.numbers.find(u"f");
            if (number != font.numbers.end()) fonts_.emplace(number->second, plainName(font.name));
        });
        readUngroupedFonts();
        const std::size_t table = text_.find(u"{\\colortbl");
        for (std::size_t at = table + 10; table != text_.npos && text_[at] != u'}';) {
            std::u16string colour;
            while (text_[at] != u';' && text_[at] != u'}') {
                if (!isWhiteSpace(text_[at])) colour += text_[at];
                ++at;
            }
            if (text_[at] == u';') {
                colours_.push_back(colour);
                ++at;
            }
        }
        readLists();
        forEachGroup(u"{\\stylesheet", [&](const Entry& style) {
            for (const std::u16string kind : {u"s", u"cs", u"ts", u"ds"}) {
                const auto number = style.numbers.find(kind);
                if (number == style.numbers.end() && kind != u"s") continue;
                const bool isNamed = number != style.numbers.end();
                if (!isNamed && style.all.starts_with(u"{\\*")) continue;
                styles_.emplace(kind + (isNamed ? number->second : u"0"), style);
                if (isNamed) return;
            }
        });
    }

    void readUngroupedFonts() {
        const std::size_t table = text_.find(u"{\\fonttbl");
        if (table == text_.npos) return;
        const std::size_t end = text_.find(u'}', table);
        for (std::size_t at = table + 9; (at = text_.find_first_not_of(u"\r\n", at)) < end && text_[at] == u'\\';) {
            const std::size_t next = text_.find(u';', at) + 1;
            const Entry font = readEntry(at, next);
            fonts_.emplace(font.numbers.at(u"f"), plainName(font.name));
            at = next;
        }
    }

    void readLists() {
        std::map<std::u16string, std::u16string> lists;
        for (const std::u16string opening : {u"{\\*\\listtable", u"{\\listtable"}) {
            forEachGroup(opening, [&](const Entry& list) {
                const auto id = list.numbers.find(u"listid");
                if (id == list.numbers.end()) return;
                lists.emplace(id->second, levels(list.all));
            });
        }
        for (const std::u16string opening : {u"{\\*\\listoverridetable", u"{\\listoverridetable"}) {
            forEachGroup(opening, [&](const Entry& override) {
                const auto id = override.numbers.find(u"listid");
                const auto number = override.numbers.find(u"ls");
                if (id == override.numbers.end() || number == override.numbers.end()) return;
                const auto list = lists.find(id->second);
                overrides_.emplace(number->second, list == lists.end() ? u"?" : list->second);
            });
        }
    }

    // A list's definition without its identities and with its references resolved.
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
            if (word.letters == u"f" || word.letters == u"af") {
                result += fontName(std::u16string(word.number));
            } else if (word.letters.substr(0, 4) != u"list" && word.letters != u"s" && word.letters != u"cf") {
                result += word.number;
            }
        }
        return result;
    }

    std::u16string fontName(const std::u16string& number) const {
        const auto font = fonts_.find(number);
        return font == fonts_.end() ? u"?" : font->second;
    }

    std::u16string styleLook(std::u16string_view kind, const std::u16string& number) const {
        std::u16string look;
        std::u16string at = number;
        for (int depth = 0; depth < 12; ++depth) {
            const auto style = styles_.find(std::u16string(kind) + at);
            // Number 0 is there without being defined.
            if (style == styles_.end()) return look + (at == u"0" ? u"normal<>" : u"?");
            look += plainName(style->second.name) + u"<" + resolved(style->second) + u">";
            const auto base = style->second.numbers.find(u"sbasedon");
            if (base == style->second.numbers.end() || base->second == u"222") return look;
            at = base->second;
        }
        return look;
    }

    // The words of a style, its references resolved or left out.
    std::u16string resolved(const Entry& style) const {
        std::u16string result;
        for (std::size_t at = 0; at < style.words.size();) {
            const ControlWord word = readWord(style.words, at);
            at = word.end;
            const std::u16string number(word.number);
            static const std::u16string_view left[] = {u"s", u"cs", u"ds", u"ts", u"sbasedon", u"snext", u"slink"};
            if (std::find(std::begin(left), std::end(left), word.letters) != std::end(left)) continue;
            result.append(u"\\").append(word.letters).append(valueOf(std::u16string(word.letters), number));
        }
        return result;
    }

    static bool isColour(const std::u16string& word) {
        static const std::u16string words[] = {u"cf", u"cb", u"highlight", u"chcbpat", u"ulc", u"clcbpat"};
        return std::find(std::begin(words), std::end(words), word) != std::end(words);
    }

    std::u16string valueOf(const std::u16string& word, const std::u16string& number) const {
        if (word == u"f" || word == u"af") return fontName(number);
        if (isColour(word)) {
            const std::size_t index =
                number.empty() || number.size() > 5 ? 0 : std::stoul(std::string(number.begin(), number.end()));
            return index < colours_.size() ? colours_[index] : u"?";
        }
        if (word == u"ls") {
            const auto list = overrides_.find(number);
            return list == overrides_.end() ? u"" : list->second;
        }
        if (word == u"s" || word == u"cs") return styleLook(word, number);
        return number;
    }

    static bool isDestination(std::u16string_view letters) {
        static const std::u16string_view words[] = {u"fonttbl", u"colortbl", u"stylesheet",        u"info",
                                                    u"pict",    u"object",   u"listoverridetable", u"listtable",
                                                    u"filetbl", u"revtbl",   u"nonesttables"};
        return std::find(std::begin(words), std::end(words), letters) != std::end(words);
    }

    void takeWord(const ControlWord& word, State& state) {
        const std::u16string letters(word.letters), number(word.number);
        if (letters == u"rtf") {
            // A document starts anew, whatever it lies in.
            state.words = {{u"f", defaultFont_}};
            state.part = documents_++;
        } else if (letters == u"deff") {
            defaultFont_ = state.words[u"f"] = number;
        } else if (letters == u"pard") {
            state.words[u"s"] = u"0";
            state.words.erase(u"ls");
        } else if (letters == u"plain") {
            for (const char16_t* word_ : {u"cf", u"cb", u"highlight", u"chcbpat", u"ulc", u"cs"})
                state.words.erase(word_);
            state.words[u"f"] = defaultFont_;
        } else if (letters == u"f" || letters == u"s" || letters == u"cs" || letters == u"ls" || isColour(letters)) {
            if (!number.empty()) state.words[letters] = number;
        } else if (isDestination(letters)) {
            state.skipped = true;
        }
    }

    void readBody(int part) {
        std::vector<State> states(1);
        for (std::size_t at = 0; at < text_.size();) {
            const char16_t unit = text_[at];
            if (unit == u'{') {
                states.push_back(states.back());
                ++at;
                if (text_.compare(at, 2, u"\\*") == 0) states.back().skipped = true;
            } else if (unit == u'}') {
                if (states.size() > 1) states.pop_back();
                ++at;
            } else if (unit == u'\\' && at + 1 < text_.size() && isLetter(text_[at + 1])) {
                const ControlWord word = readWord(text_, at);
                if (word.letters == u"rtf" && states.size() > 1) states.back().skipped = false;
                takeWord(word, states.back());
                at = word.end + (word.end < text_.size() && text_[word.end] == u' ');
            } else if (unit == u'\\') {
                take(states.back(), part, at + 1 < text_.size() ? text_[at + 1] : u'\\');
                at += 2;
            } else {
                if (!isWhiteSpace(unit)) take(states.back(), part, unit);
                ++at;
            }
        }
    }

    void take(const State& state, int part, char16_t unit) {
        if (state.skipped || state.part != part) return;
        auto look = looks_.find(state.words);
        if (look == looks_.end()) {
            std::u16string text;
            for (const auto& [word, number] : state.words) {
                if (word == u"s" && number == u"0" && !withNormal_) continue;
                text += word + u"=" + valueOf(word, number) + u" ";
            }
            look = looks_.emplace(state.words, text).first;
        }
        units_.push_back({unit, look->second});
    }

    const std::u16string& text_;
    std::map<std::u16string, std::u16string> fonts_;
    std::vector<std::u16string> colours_;
    std::map<std::u16string, std::u16string> overrides_;  // to the definition of the list
    std::map<std::u16string, Entry> styles_;              // by kind and number
    std::map<std::map<std::u16string, std::u16string>, std::u16string> looks_;
    std::vector<Unit> units_;
    int documents_ = 0;
    bool withNormal_ = true;
    std::u16string defaultFont_ = u"0";
};

}  // namespace velmor::test
