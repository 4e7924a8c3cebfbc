#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "automation/NumberText.h"
#include "rtf/pages/PageSetup.h"
#include "text/Compare.h"
#include "text/Escape.h"

namespace velmor::test {

// The model of the stages of cleaning: one change after the other, each search from the start of its
// range. 0-based; `none` is not found.
class LiteralCleaning {
public:
    std::u16string text;
    std::vector<std::u16string> documents;  // RTF1, RTF2, ...

    // ---- Lifting documents out. `mark` encloses the number of each placeholder.

    void extract(char16_t mark) {
        const std::size_t host = document(text, 0);
        if (host != none) extractFrom(text, host, mark);
    }

    // ---- The other stages

    void mergePageBreaks() {
        const std::u16string marker = u"{\\*\\korvanemergepagebreak}";
        for (std::size_t at = find(text, marker, 0); at != none; at = find(text, marker, at + 1)) {
            const std::size_t next = find(text, marker, at + 1);
            const std::u16string section = text.substr(at, next == none ? none : next - at);
            const auto settings = settingsOf(section);
            if (!settings) continue;
            PageSetup page;
            for (std::size_t i = 0; i < 6; ++i) {
                const auto own = numberBehind(*settings, PageSetup::sectionWords[i], false);
                const auto document = numberBehind(section, PageSetup::documentWords[i], true);
                page.values[i] = whole(own ? *own : document.value_or(u""));
            }
            orient(page, *settings, u"\\lndscpsxn");
            const std::u16string change = u"\\sect" + page.words();
            text.replace(at, marker.size(), change);
            if (join(text, at + change.size())) text.insert(at + change.size(), u" ");
        }
    }

    void sectionMarkers() {
        PageSetup page;
        const std::u16string marker = u"{\\*\\korvanesection";
        const PageSetup::Words groupWords = {u"paperheight", u"paperwidth", u"marginl",
                                             u"marginr",     u"margint",    u"marginb"};
        for (std::size_t at = find(text, marker, 0); at != none; at = find(text, marker, at + 1)) {
            const std::size_t end = text.find(u'}', at);
            if (end == none) continue;
            const std::u16string group = text.substr(at, end + 1 - at);
            for (std::size_t i = 0; i < 6; ++i) {
                const auto own = numberBehind(group, groupWords[i], false);
                const auto document = numberBehind(text, PageSetup::documentWords[i], true);
                if (!own && (!document || *document == endless)) continue;
                auto value = number(own ? *own : *document);
                if (own && value && *value <= 50) value = *value / 2.54 * 1440;
                if (!fits(value)) return;
                page.values[i] = static_cast<std::int32_t>(std::nearbyint(*value));
            }
            orient(page, group, u"\\landscape");
            text.replace(at + 4, 14, u"korvanecmplete");
            for (const std::u16string sought : {u"\\page", u"\\sectd"}) {
                const std::size_t place = lastWord(sought, at);
                if (place == none) continue;
                const std::u16string opening = sought == u"\\page" ? u"\\sect" : u"\\sectd";
                text.replace(place, sought.size(), opening + page.words());
                break;
            }
        }
    }

    void protectRows() {
        for (std::size_t at = 0; (at = word(text, u"\\trowd", at, false)) != none;) {
            const std::size_t row = word(text, u"\\row", at + 1, false);
            if (row == none) return;
            const std::size_t keep = word(text, u"\\trkeep", at + 1, false);
            const bool missing = keep == none || keep > row;
            if (missing) text.insert(row, u"\\trkeep");
            at = row + (missing ? 7 : 0) + 1;
        }
    }

    void removeGeneratorSectionWords() {
        const std::u16string opening = u"{\\*\\generator Korvane RTF Control";
        const std::size_t before = text.size();
        for (std::size_t at = 0; (at = text.find(opening, at)) != none; ++at) {
            const std::size_t end = text.find(u'}', at);
            if (end == none || end + 1 - at >= 70) continue;
            const std::size_t run = behindWhite(end + 1);
            while (beginsSectionWord(run) && std::min(text.find_first_of(u"\\{}", run + 1), text.size()) - run <= 15) {
                std::size_t behind = run + 1;
                while (behind < text.size() && letter(text[behind])) ++behind;
                behind += behind + 1 < text.size() && text[behind] == u'-' && digit(text[behind + 1]);
                while (behind < text.size() && digit(text[behind])) ++behind;
                text.erase(run, behindWhite(behind) - run);
            }
        }
        if (text.size() != before) text.resize(text.find_last_not_of(u' ') + 1);
    }

    void removeBackground() {
        for (;;) {
            const std::size_t at = find(text, u"{\\*\\background", 0, true);
            if (at == none || groupEnd(text, at) == none) return;
            remove(at, groupEnd(text, at) + 1 - at);
        }
    }

    void unwrap() {
        const std::size_t host = document(text, 0);
        if (host == none) return;
        for (std::size_t at = host + 1; (at = document(text, at)) != none;) {
            if (at + 5 >= text.size() || text[at + 5] != u'1') {
                ++at;
                continue;
            }
            const std::size_t end = groupEnd(text, at);
            if (end == none) break;
            // The joined words are known at the end.
            text.replace(end, 1, 1, seam);
            text.replace(at, 6, 1, text[at + 6] == u' ' ? blankSeam : seam);
        }
        for (std::size_t at; (at = text.find_first_of(seams)) != none;) {
            const std::size_t behind = std::min(text.find_first_not_of(seams, at), text.size());
            const bool blankWas = text[behind - 1] == blankSeam;
            text.erase(at, behind - at);
            if (!blankWas && join(text, at)) text.insert(at, u" ");
        }
    }

    void removeDuplicateGenerators() {
        std::u16string kept;
        for (std::size_t at = 0; (at = find(text, u"{\\*\\generator", at)) != none;) {
            const std::size_t end = text.find(u'}', at);
            if (end == none) return;
            const std::u16string group = text.substr(at, end + 1 - at);
            if (group == kept) {
                remove(at, group.size());
            } else {
                kept = group;
                at = end + 1;
            }
        }
    }

    void collapseBlankLines() {
        for (std::size_t at; (at = text.find(u"\r\n\r\n")) != none;) text.erase(at, 2);
    }

    static constexpr std::size_t none = std::u16string::npos;
    // Marks a cut while more follow; the second one precedes a blank that ended a word.
    static constexpr char16_t seam = 0xE000, blankSeam = 0xE001;
    static constexpr std::u16string_view seams = u"\ue000\ue001";

private:
    std::size_t behindWhite(std::size_t at) const {
        return std::min(text.find_first_not_of(u" \r\n", at), text.size());
    }

    bool beginsSectionWord(std::size_t at) const {
        for (const char16_t* word :
             {u"\\box", u"\\marg", u"\\brdr", u"\\brsp", u"\\cols", u"\\colw", u"\\pgbrd", u"\\colno", u"\\pgwsxn",
              u"\\pghsxn", u"\\gutter", u"\\headery", u"\\footery", u"\\titlepg", u"\\lndscpsxn", u"\\linebetcol"}) {
            if (text.compare(at, std::u16string(word).size(), word) == 0) return true;
        }
        return false;
    }

    static bool letter(char16_t unit) { return (unit | 32) >= u'a' && (unit | 32) <= u'z'; }
    static bool digit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

    static std::size_t find(const std::u16string& where, const std::u16string& sought, std::size_t from,
                            bool ignoringCase = false) {
        for (; from + sought.size() <= where.size(); ++from) {
            const std::u16string_view part = std::u16string_view(where).substr(from, sought.size());
            const bool same = ignoringCase ? equalIgnoringCase(part, sought) : part == sought;
            if (same && !isEscaped(where, from)) return from;
        }
        return none;
    }

    static std::size_t word(const std::u16string& where, const std::u16string& sought, std::size_t from,
                            bool wholeWord) {
        for (; (from = find(where, sought, from)) != none; ++from) {
            const std::size_t end = from + sought.size();
            if (!wholeWord || end >= where.size() || !letter(where[end])) return from;
        }
        return none;
    }

    // The last whole word that begins before `limit`.
    std::size_t lastWord(const std::u16string& sought, std::size_t limit) const {
        std::size_t last = none;
        for (std::size_t at = 0; (at = word(text, sought, at, true)) < limit; ++at) last = at;
        return last;
    }

    static std::size_t document(const std::u16string& where, std::size_t from) {
        return find(where, u"{\\rtf", from, true);
    }

    static std::size_t groupEnd(const std::u16string& where, std::size_t open) {
        int depth = 1;
        for (std::size_t i = open + 1; i < where.size(); ++i) {
            if (where[i] != u'{' && where[i] != u'}') continue;
            const bool opensDocument = document(where.substr(0, i + 5), i) == i;
            if (where[i - 1] == u'\\' && !opensDocument) continue;
            depth += where[i] == u'{' ? 1 : -1;
            if (depth == 0) return i;
        }
        return none;
    }

    void extractFrom(std::u16string& where, std::size_t host, char16_t mark) {
        for (std::size_t at = host + 1; (at = document(where, at)) != none;) {
            const std::size_t end = groupEnd(where, at);
            if (end == none) return;
            std::u16string group = where.substr(at, end + 1 - at);
            if (group == u"{\\rtf1{\\*\\korvanenewheader}}" || group == u"{\\rtf1{\\*\\korvanenewfooter}}") {
                where.replace(at, group.size(), group.substr(6, group.size() - 7));
                if (join(where, at + group.size() - 7)) where.insert(at + group.size() - 7, u" ");
                continue;
            }
            documents.push_back(group);
            const std::size_t number = documents.size() - 1;
            const std::string digits = std::to_string(number + 5);
            where.replace(at, group.size(), mark + std::u16string(digits.begin(), digits.end()) + mark);
            extractFrom(group, 0, mark);
            documents[number] = group;
        }
    }

    // Whether a control word before the index would continue there.
    static bool join(const std::u16string& where, std::size_t index) {
        if (index >= where.size()) return false;
        const char16_t next = where[index];
        std::size_t at = index;
        while (at > 0 && digit(where[at - 1])) --at;
        if (at > 0 && where[at - 1] == u'-') --at;
        const bool numbered = at != index;
        const std::size_t end = at;
        while (at > 0 && letter(where[at - 1])) --at;
        if (at == end || at == 0 || where[at - 1] != u'\\' || isEscaped(where, at - 1)) return false;
        return next == u' ' || digit(next) || (!numbered && (letter(next) || next == u'-'));
    }

    void remove(std::size_t at, std::size_t count) {
        text.erase(at, count);
        if (join(text, at)) text.insert(at, u" ");
    }

    static std::optional<std::u16string> settingsOf(const std::u16string& section) {
        const std::size_t begin = word(section, u"\\sectd", 0, true);
        if (begin == none) return section;
        const std::size_t sect = word(section, u"\\sect", begin + 5, true);
        const std::size_t page = word(section, u"\\page", begin + 5, true);
        if (sect != none && page == none) return std::nullopt;
        return section.substr(begin, std::min(sect, page) - begin);
    }

    // Marks a number without an end.
    static constexpr std::u16string_view endless = u"...";

    // The text after the first such word, without white space around it; nothing without the word.
    static std::optional<std::u16string> numberBehind(const std::u16string& where, std::u16string_view letters,
                                                      bool wholeWord) {
        const std::u16string sought = u"\\" + std::u16string(letters);
        std::size_t at = word(where, sought, 0, wholeWord);
        if (at == none) return std::nullopt;
        at = std::min(where.find_first_not_of(u" \r\n\t", at + sought.size()), where.size());
        const std::size_t end = where.find_first_of(u"\r\\{} ", at);
        if (end == none) return std::u16string(endless);
        std::u16string digits = where.substr(at, end - at);
        while (digits.ends_with(u'\n') || digits.ends_with(u'\t')) digits.pop_back();
        return digits;
    }

    static std::int32_t whole(std::u16string_view digits) {
        const std::u16string_view rest = digits.substr(digits.starts_with(u'-'));
        if (rest.empty() || !std::all_of(rest.begin(), rest.end(), digit)) return 0;
        const double value = std::strtod(std::string(digits.begin(), digits.end()).c_str(), nullptr);
        return fits(value) ? static_cast<std::int32_t>(value) : 0;
    }

    static std::optional<double> number(const std::u16string& digits) {
        const auto parsed = automation::portable::parseNumberText(digits);
        return parsed ? automation::portable::doubleOf(*parsed) : std::nullopt;
    }

    static bool fits(std::optional<double> value) {
        return value && std::nearbyint(*value) >= -2147483648.0 && std::nearbyint(*value) <= 2147483647.0;
    }

    static void orient(PageSetup& page, const std::u16string& where, const std::u16string& landscape) {
        page.landscape = word(where, landscape, 0, false) != none;
        const bool portrait = !page.landscape && word(where, u"\\portrait", 0, false) != none;
        auto &height = page.values[0], &width = page.values[1];
        if ((page.landscape && height > width) || (portrait && width > height)) std::swap(height, width);
    }
};

}  // namespace velmor::test
