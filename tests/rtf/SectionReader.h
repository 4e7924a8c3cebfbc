#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmor::test {

using namespace std::string_view_literals;

// The sections of a document as a reader of RTF sees them. A closing brace restores the section's words
// before the group; the words in force at a section's end describe it. Headers are inherited by kind of
// page; of two in one section the first counts. \facingp counts only before the text.
class SectionReader {
public:
    struct Section {
        std::u16string text;   // with "|" for page breaks
        std::u16string shows;  // "right/left/first distance border;", for headers and for footers
        std::u16string page;   // "width height left right top bottom", and other words of the section
    };

    static std::vector<Section> of(std::u16string_view document) { return SectionReader(document).sections_; }

private:
    explicit SectionReader(std::u16string_view document) : document_(document) {
        while (at_ < document.size()) {
            if (document[at_] == u'{') {
                openGroup();
            } else if (document[at_] == u'}') {
                if (words_.size() == 2) endSection();
                if (words_.size() > 1) words_.pop_back();
                ++at_;
            } else if (document[at_] == u'\\') {
                take();
            } else {
                if (document[at_] >= u' ') section_.text += document[at_];
                ++at_;
            }
        }
    }

    using Words = std::map<std::u16string, std::u16string, std::less<>>;

    static bool isLetter(char16_t unit) { return (unit | 32) >= u'a' && (unit | 32) <= u'z'; }

    // The letters after a backslash; `at` moves to their end.
    std::u16string_view letters(std::size_t& at) const {
        const std::size_t begin = ++at;
        while (at < document_.size() && isLetter(document_[at])) ++at;
        return document_.substr(begin, at - begin);
    }

    std::size_t groupEnd() const {
        std::size_t at = at_;
        for (int depth = 0; at < document_.size(); at += document_[at] == u'\\' ? 2 : 1) {
            if (document_[at] == u'{') ++depth;
            if (document_[at] == u'}' && --depth == 0) return at + 1;
        }
        return at;
    }

    void openGroup() {
        std::size_t at = at_ + 1;
        const std::u16string_view name = document_.substr(at_, 2) == u"{\\" ? letters(at) : u"";
        const std::size_t pages = name.size() == 6 ? 1 : name.size() == 7 ? u" rlf"sv.find(name[6]) : 0;
        const bool isPart = pages - 1 < 3;
        const bool footer = isPart && name.starts_with(u"footer"), header = isPart && name.starts_with(u"header");
        const std::u16string_view hidden[] = {u"fonttbl", u"colortbl", u"stylesheet"};
        const bool isHidden = std::find(std::begin(hidden), std::end(hidden), name) != std::end(hidden);
        if (document_.substr(at_, 3) == u"{\\*" || isHidden) {
            at_ = groupEnd();
        } else if (header || footer) {
            const std::size_t end = groupEnd();
            std::u16string text(document_.substr(at, end - 1 - at));
            if (text.starts_with(u"\\pard\\plain") && text.ends_with(u"\\par")) text.clear();
            given_.emplace(std::pair(footer, static_cast<int>(pages)), text);
            at_ = end;
        } else {
            words_.push_back(words_.back());
            ++at_;
        }
    }

    void take() {
        const std::u16string word(letters(at_));
        if (word.empty()) return void(++at_);
        const std::size_t digits = at_;
        while (at_ < document_.size() && (document_[at_] == u'-' || (document_[at_] >= u'0' && document_[at_] <= u'9')))
            ++at_;
        const std::u16string number(document_.substr(digits, at_ - digits));
        if (at_ < document_.size() && document_[at_] == u' ') ++at_;
        if (word == u"sect") return endSection();
        if (word == u"page") section_.text += u'|';
        if (word == u"facingp") facing_ = facing_ || (sections_.empty() && section_.text.empty());
        if (word == u"sectd") return words_.back().clear();
        if (word.starts_with(u"paper") || word.size() == 5) paper_[word] = number;
        if (word.starts_with(u"sbk")) words_.back().erase(u"sbknone");
        words_.back()[word] = number;
    }

    void endSection() {
        const Words& words = words_.back();
        const auto number = [&](const Words& from, const char16_t* word) {
            const auto found = from.find(word);
            return found == from.end() ? std::u16string() : found->second;
        };
        for (const auto& [pages, text] : given_) shown_[pages] = text;
        given_.clear();
        for (const bool footer : {false, true}) {
            const auto shown = [&](bool differs, int pages) { return shown_[{footer, differs ? pages : 1}]; };
            const std::u16string pages =
                shown(false, 1) + u"/" + shown(facing_, 2) + u"/" + shown(words.count(u"titlepg") != 0, 3);
            section_.shows += pages + u" ";
            // The place of a header without text is invisible.
            if (pages != u"//") section_.shows += number(words, footer ? u"footery" : u"headery");
            section_.shows += words.count(footer ? u"pgbrdrfoot" : u"pgbrdrhead") != 0 ? u"b;" : u";";
        }
        constexpr const char16_t* values[][3] = {{u"pgwsxn", u"paperw", u"12240"}, {u"pghsxn", u"paperh", u"15840"},
                                                 {u"marglsxn", u"margl", u"1800"}, {u"margrsxn", u"margr", u"1800"},
                                                 {u"margtsxn", u"margt", u"1440"}, {u"margbsxn", u"margb", u"1440"}};
        for (const auto& [own, document, standard] : values) {
            std::u16string value = number(words, own);
            if (value.empty()) value = number(paper_, document);
            section_.page += (value.empty() ? standard : value) + u" ";
        }
        for (const char16_t* word : {u"lndscpsxn", u"sbknone", u"pgncont", u"cols"}) {
            if (words.count(word) != 0) section_.page += word + number(words, word) + u" ";
        }
        section_.page.pop_back();
        sections_.push_back(section_);
        section_ = {};
    }

    std::u16string_view document_;
    std::size_t at_ = 0;
    std::vector<Section> sections_;
    Section section_;
    std::vector<Words> words_{{}};
    Words paper_;  // of the document
    std::map<std::pair<bool, int>, std::u16string> given_, shown_;
    bool facing_ = false;
};

}  // namespace velmor::test
