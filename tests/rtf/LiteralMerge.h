#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "LiteralModule1.h"

namespace velmor::test {

// The model of merging fonts and colours: one search and replacement after the other. It reads simple
// tables only: font entries that are groups, colours after a first ";".
class LiteralMerge {
public:
    // Renumbers the document and removes its tables; the host (whose text begins "{\rtf1") gets
    // "[F]" and "[C]" for them.
    void merge(std::u16string& text, bool host) {
        mergeFonts(text, host);
        mergeColours(text, host);
    }

    std::u16string fontTable() const {
        std::u16string table = u"{\\fonttbl";
        for (const auto& [name, entry] : fonts_) table += u"\r\n" + entry;
        return table + u"}";
    }

    std::u16string colourTable() const {
        std::u16string table = u"{\\colortbl;";
        for (const std::u16string& colour : colours_) table += colour;
        if (colours_.empty()) {
            table +=
                u"\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red255\\green0\\blue0;"
                u"\\red0\\green255\\blue0;\\red0\\green0\\blue255;";
        }
        return table + u"}";
    }

private:
    using Mapping = std::vector<std::pair<std::u16string, std::u16string>>;

    static void replaceAll(std::u16string& text, const std::u16string& from, const std::u16string& to) {
        LiteralBuffer buffer{text, static_cast<std::int32_t>(text.size())};
        buffer.replaceRTFWord(from, to, 1, -1);
        text = buffer.buffer;
    }

    static std::u16string digits(std::size_t number) {
        const std::string text = std::to_string(number);
        return {text.begin(), text.end()};
    }

    static void renumber(std::u16string& text, const std::u16string& word, const std::u16string& capitals,
                         const Mapping& mapping) {
        for (const auto& [from, to] : mapping) {
            for (const char16_t delimiter : std::u16string(u"\\ }{\r")) {
                replaceAll(text, word + from + delimiter, capitals + to + delimiter);
            }
        }
        replaceAll(text, capitals, word);
    }

    void mergeFonts(std::u16string& text, bool host) {
        const LiteralBuffer buffer{text, static_cast<std::int32_t>(text.size())};
        const auto [first, last] = buffer.groupEnd(1, u"{\\fonttbl", 0);
        if (last == 0) {
            if (host) text.insert(6, u"[F]");
            return;
        }
        const auto start = static_cast<std::size_t>(first) - 1;
        const std::u16string table = text.substr(start, static_cast<std::size_t>(last) - start);
        text.replace(start, table.size(), host ? u"[F]" : u"");
        Mapping mapping;
        std::size_t at = table.find(u"{\\f", 2);
        while (at != std::u16string::npos) {
            const std::size_t end = table.find(u";}", at);
            if (end == std::u16string::npos) break;
            const std::size_t numberEnd = table.find_first_of(u"\\ ", at + 3);
            const std::size_t blank = table.find(u' ', at);
            const std::u16string name = table.substr(blank + 1, end - blank - 1);
            std::size_t number = 0;
            while (number < fonts_.size() && !equalIgnoringCase(fonts_[number].first, name)) ++number;
            if (number == fonts_.size()) {
                fonts_.emplace_back(name, u"{\\f" + digits(number) + table.substr(numberEnd, end + 2 - numberEnd));
            }
            const std::u16string old = table.substr(at + 3, numberEnd - at - 3);
            const auto isOld = [&](const auto& known) { return known.first == old; };
            if (std::none_of(mapping.begin(), mapping.end(), isOld)) mapping.emplace_back(old, digits(number));
            at = table.find(u"{\\f", end);
        }
        renumber(text, u"\\f", u"\\F", mapping);
    }

    void mergeColours(std::u16string& text, bool host) {
        const std::size_t start = text.find(u"{\\colortbl");
        const std::size_t last = start == std::u16string::npos ? start : text.find(u'}', start);
        if (last == std::u16string::npos) {
            if (host) text.insert(6, u"[C]");
            return;
        }
        const std::u16string table = text.substr(start, last + 1 - start);
        text.replace(start, table.size(), host ? u"[C]" : u"");
        Mapping mapping;
        for (std::size_t at = std::max<std::size_t>(table.find_first_not_of(u" \r\n", 11), 11);
             table[mapping.empty() ? 10 : at] == (mapping.empty() ? u';' : u'\\');) {
            const std::size_t end = table.find(u';', at);
            if (end == std::u16string::npos) break;
            const std::u16string colour = table.substr(at, end + 1 - at);
            std::size_t number = 0;
            while (number < colours_.size() && !equalIgnoringCase(colours_[number], colour)) ++number;
            if (number == colours_.size()) colours_.push_back(colour);
            mapping.emplace_back(digits(mapping.size() + 1), digits(number + 1));
            at = end + 1;
        }
        const std::array<std::u16string, 13> words = {u"cf",     u"cb",        u"chcfpat", u"chcbpat", u"pncf",
                                                      u"brdrcf", u"cfpat",     u"cbpat",   u"clcfpat", u"clcbpat",
                                                      u"afc",    u"highlight", u"ulc"};
        for (const std::u16string& word : words) {
            std::u16string capitals = word;
            for (char16_t& unit : capitals) unit = static_cast<char16_t>(unit - 0x20);
            renumber(text, u"\\" + word, u"\\" + capitals, mapping);
        }
    }

    std::vector<std::pair<std::u16string, std::u16string>> fonts_;
    std::vector<std::u16string> colours_;
};

}  // namespace velmor::test
