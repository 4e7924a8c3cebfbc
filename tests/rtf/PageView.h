#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/ControlWord.h"
#include "rtf/HeaderWords.h"

namespace velmor::test {

// The sections of a document: their text, and what their pages show at head and foot, as readers of RTF
// have it. A section inherits, by kind of page, what it does not give; of two groups for one kind the
// first counts; what a section says of itself is what holds at its end, and a brace restores it;
// \facingp counts in front of the text alone.
class PageView {
public:
    struct Section {
        std::u16string text;
        std::u16string shows;
        bool operator==(const Section&) const = default;
    };

    static std::vector<Section> of(std::u16string_view document) { return PageView(document).sections_; }

    // What the sections show when pages are filled in: "right/left/first distance border".
    template <typename Shown>
    static std::u16string shows(bool facing, const HeaderWords& words, Shown shown) {
        std::u16string text;
        for (const HeaderKind kind : headerKinds) {
            text += shown(kind, HeaderPages::right) + u"/";
            text += shown(kind, facing ? HeaderPages::left : HeaderPages::right) + u"/";
            text += shown(kind, words.title ? HeaderPages::first : HeaderPages::right) + u" ";
            text += std::u16string(words.distance[kind]) + (words.border[kind] ? u"b;" : u";");
        }
        return text;
    }

private:
    using Pages = std::array<std::optional<std::u16string>, 4>;

    explicit PageView(std::u16string_view document) {
        std::vector<HeaderWords> words{{}};
        for (std::size_t at = 0; at < document.size();) {
            if (document[at] == u'{') {
                const std::size_t behind = openGroup(document, at);
                if (behind == at) words.push_back(words.back());
                at = std::max(behind, at + 1);
            } else if (document[at] == u'}') {
                if (words.size() == 2) endSection(words.back());
                if (words.size() > 1) words.pop_back();
                ++at;
            } else if (document[at] == u'\\') {
                const ControlWord word = readWord(document, at);
                take(word, words.back());
                at = std::max(word.end, at + 2);
                at += at == word.end && at < document.size() && document[at] == u' ';
            } else {
                if (document[at] >= u' ') section_.text += document[at];
                ++at;
            }
        }
    }

    static std::size_t groupEnd(std::u16string_view document, std::size_t at) {
        for (int depth = 0; at < document.size(); at += document[at] == u'\\' ? 2 : 1) {
            if (document[at] == u'{') ++depth;
            if (document[at] == u'}' && --depth == 0) return at + 1;
        }
        return at;
    }

    // Behind a group that is no text; else where it was.
    std::size_t openGroup(std::u16string_view document, std::size_t at) {
        if (document.substr(at, 3) == u"{\\*") return groupEnd(document, at);
        const ControlWord word = readWord(document, at + 1);
        if (word.letters == u"fonttbl" || word.letters == u"colortbl") return groupEnd(document, at);
        const auto name = headerNamed(word.letters);
        if (!name) return at;
        const std::size_t end = groupEnd(document, at);
        auto& given = given_[name->kind][static_cast<std::size_t>(std::max(name->pages, HeaderPages::right))];
        if (!given) given = document.substr(word.end, end - 1 - word.end);
        if (*given == u"\\pard\\plain\\par") given = u"";
        return end;
    }

    void take(const ControlWord& word, HeaderWords& words) {
        if (word.letters == u"sect") return endSection(words);
        if (word.letters == u"sectd") words = {};
        if (word.letters == u"titlepg") words.title = true;
        if (word.letters == u"facingp") facing_ = facing_ || (sections_.empty() && section_.text.empty());
        for (const HeaderKind kind : headerKinds) {
            const bool header = kind == HeaderKind::header;
            if (word.letters == (header ? u"headery" : u"footery")) words.distance[kind] = word.number;
            if (word.letters == (header ? u"pgbrdrhead" : u"pgbrdrfoot")) words.border[kind] = true;
        }
        if (word.letters == u"page") section_.text += u'|';
    }

    void endSection(const HeaderWords& words) {
        for (const HeaderKind kind : headerKinds) {
            for (std::size_t i = 0; i < 4; ++i) {
                if (given_[kind][i]) current_[kind][i] = *given_[kind][i];
            }
        }
        given_ = {};
        section_.shows = shows(facing_, words, [&](HeaderKind kind, HeaderPages pages) {
            return current_[kind][static_cast<std::size_t>(pages)].value_or(u"");
        });
        sections_.push_back(section_);
        section_ = {};
    }

    std::vector<Section> sections_;
    Section section_;
    PerKind<Pages> given_, current_;
    bool facing_ = false;
};

}  // namespace velmor::test
