#pragma once

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SectionReader.h"
#include "rtf/edit/EmbeddedDocuments.h"
#include "rtf/merge/UnwrapNestedDocuments.h"
#include "rtf/pages/HeaderWords.h"
#include "rtf/pages/HeadersFooters.h"

namespace velmor::test {

// The text as the stage leaves it, with its documents in their places and unwrapped.
inline std::u16string withHeadersApplied(std::u16string text, const CleanOptions& options) {
    TableCollection tables(u'\uFDD0');
    Module1::ExtractEmbeddedDocuments(text, tables, options);
    Module1::ApplyHeadersFooters(text, tables, options);
    tables.expand(text);
    Module1::UnwrapNestedDocuments(text, options);
    return text;
}

// A host with documents and markers for headers and footers in it, made up from `choose(n)`, a number
// below n: its text, and said plainly what its sections are to be once the headers are where they belong.
template <typename Choose>
class LiteralHeaders {
public:
    // `braced`: documents return between braces, which restore what a section says of itself.
    LiteralHeaders(Choose choose, bool braced) : choose_(choose), braced_(braced) {
        facing_ = choose_(4) == 0;
        makeUp(0);
        tokens_.push_back({What::text, 0, HeaderKind::header, HeaderPages::all, number()});
        text = u"{\\rtf1";
        if (facing_) text += u"\\facingp";
        for (const Token& token : tokens_) text += written(token);
        text += u"}";
        interpret();
    }

    std::u16string text;
    std::vector<SectionReader::Section> sections;

private:
    enum class What { text, row, page, section, defaults, title, distance, border, group, marker, enter, leave };

    struct Token {
        What what;
        std::size_t document;  // that it stands in, or that begins or ends; 0: the host
        HeaderKind kind = HeaderKind::header;
        HeaderPages pages = HeaderPages::all;
        std::u16string number;
    };

    using Slots = std::array<std::optional<std::u16string>, 4>;

    struct Taken {
        bool byHost = false;
        bool any = false;
        Slots slots;
        HeaderWords words;
    };

    // ---- Making up

    std::u16string number() {
        const std::string digits = std::to_string(++numbers_);
        return {digits.begin(), digits.end()};
    }

    void makeUp(std::size_t document, int depth = 0) {
        for (unsigned count = 1 + choose_(depth == 0 ? 12 : 6); count > 0; --count) {
            constexpr What kinds[] = {What::text,     What::text,     What::row,   What::page,   What::section,
                                      What::section,  What::title,    What::title, What::border, What::distance,
                                      What::group,    What::group,    What::group, What::marker, What::marker,
                                      What::defaults, What::defaults, What::enter, What::enter,  What::enter};
            const What chosen = kinds[choose_(20)];
            if (chosen == What::enter) {
                if (depth == 3) continue;
                const std::size_t inner = ++documents_;
                tokens_.push_back({What::enter, inner, HeaderKind::header, HeaderPages::all, {}});
                makeUp(inner, depth + 1);
                tokens_.push_back({What::leave, inner, HeaderKind::header, HeaderPages::all, {}});
                continue;
            }
            tokens_.push_back(
                {chosen, document, headerKinds[choose_(2)], static_cast<HeaderPages>(choose_(4)), number()});
        }
    }

    static std::u16string written(const Token& token) {
        const bool header = token.kind == HeaderKind::header;
        const std::u16string marker = header ? u"{\\*\\korvanenewheader}" : u"{\\*\\korvanenewfooter}";
        switch (token.what) {
            case What::text:
                return u"\\pard t" + token.number;
            // Every second row has a marker in it.
            case What::row:
                return u"\\trowd r" + token.number + (hasMarker(token) ? marker : u"") + u"\\cell\\row\\pard";
            case What::page:
                return u"\\page ";
            case What::section:
                return u"\\sect ";
            case What::defaults:
                return u"\\sectd ";
            case What::title:
                return u"\\titlepg ";
            case What::distance:
                return (header ? u"\\headery" : u"\\footery") + token.number + u" ";
            case What::border:
                return header ? u"\\pgbrdrhead " : u"\\pgbrdrfoot ";
            case What::group:
                return std::u16string(HeaderName{token.kind, token.pages}.opening()) + u" g" + token.number + u"}";
            case What::marker:
                return marker;
            case What::enter:
                return u"{\\rtf1\\plain";
            case What::leave:
                return u"}";
        }
        return u"";
    }

    static bool hasMarker(const Token& token) { return (token.number.back() & 1) == 0; }

    // ---- What it means

    void interpret() {
        for (std::size_t i = 0; i < tokens_.size(); ++i) {
            const Token& token = tokens_[i];
            const bool host = token.document == 0;
            switch (token.what) {
                case What::text:
                    beginPending(i);
                    content(u"t" + token.number);
                    break;
                case What::row:
                    content(u"r" + token.number);
                    if (hasMarker(token)) pending_[token.kind] = i;
                    break;
                case What::page:
                    beginPending(i);
                    if (justBegan()) break;
                    content(u"|");
                    pageBreak_ = true;
                    page_ = {words_, outside_.size(), depth_};
                    break;
                case What::section:
                    beginPending(i);
                    if (justBegan()) break;
                    endSection(i);
                    byDocument_ = !host;
                    break;
                case What::defaults:
                    pageBreak_ = false;
                    if (host) words_ = said_ = {};
                    if (!host && byDocument_ && wanted_.empty() && !continues_.back()) words_.title = false;
                    break;
                case What::title:
                case What::distance:
                case What::border:
                    if (!host) break;
                    pageBreak_ = false;
                    say(token, words_);
                    say(token, said_);
                    break;
                case What::group:
                    if (!host) break;
                    beginPending(i);
                    pageBreak_ = false;
                    put(hosts_[token.kind], token, std::max(token.pages, HeaderPages::right));
                    break;
                case What::marker:
                    mark(i);
                    break;
                case What::enter:
                    outside_.push_back(words_);
                    continues_.push_back(braced_ && hasContent_);
                    break;
                case What::leave:
                    leave();
                    break;
            }
        }
        endSection(tokens_.size());
    }

    // A closing brace takes back what was said behind the opening one.
    void leave() {
        if (braced_) words_ = outside_.back();
        outside_.pop_back();
        continues_.pop_back();
        page_.depth = std::min(page_.depth, outside_.size());
        depth_ = std::min(depth_, outside_.size());
    }

    static void say(const Token& token, HeaderWords& words) {
        if (token.what == What::title) words.title = true;
        if (token.what == What::distance) words.distance[token.kind] = token.number;
        if (token.what == What::border) words.border[token.kind] = true;
        if (token.what == What::defaults) words = {};
    }

    // The first one counts.
    static void put(Slots& slots, const Token& token, HeaderPages pages) {
        auto& slot = slots[static_cast<std::size_t>(pages)];
        if (!slot) slot = u" g" + token.number;
    }
    static std::optional<std::u16string> mainOf(const Slots& slots) { return slots[0] ? slots[0] : slots[1]; }

    void content(const std::u16string& more) {
        view_.text += more;
        hasContent_ = true;
        pageBreak_ = false;
    }

    bool justBegan() const { return breaks_ && !hasContent_; }

    void mark(std::size_t i) {
        const HeaderKind kind = tokens_[i].kind;
        if (!pending_.empty()) {
            pending_[kind] = i;
            return;
        }
        if (hasContent_) {
            if (pageBreak_) view_.text.pop_back();
            const std::size_t depth = pageBreak_ ? page_.depth : outside_.size();
            const HeaderWords words = words_, said = said_;
            // It ended at the page; documents may have ended since, and their braces took back what they said.
            const bool left = pageBreak_ && depth_ < page_.sectionDepth;
            if (pageBreak_) words_ = page_.words;
            if (pageBreak_) depth_ = page_.sectionDepth;
            beginSection(i);
            if (braced_) words_ = words;
            for (const auto& [other, taken] : brought_) {
                if (braced_ && !left) bring(taken, other, said, words_);
            }
            depth_ = depth;
        } else if (wanted_.empty()) {
            said_ = {};
            depth_ = outside_.size();
        }
        wanted_[kind] = i;
    }

    void beginPending(std::size_t i) {
        if (pending_.empty()) return;
        const auto wanted = std::exchange(pending_, {});
        beginSection(i);
        wanted_ = wanted;
    }

    void beginSection(std::size_t i) {
        endSection(i);
        breaks_ = true;
    }

    static void bring(const HeaderWords& taken, HeaderKind kind, const HeaderWords& said, HeaderWords& words) {
        if (said.distance[kind].empty() && !taken.distance[kind].empty()) words.distance[kind] = taken.distance[kind];
        words.border[kind] = words.border[kind] || taken.border[kind];
        words.title = words.title || taken.title;
    }

    Taken take(HeaderKind kind, std::size_t marker, std::size_t end) const {
        Taken taken;
        std::size_t awaited = 0, source = 0, stop = end, last = 0;
        for (const auto& [other, at] : wanted_) last = std::max(last, at);
        for (std::size_t j = marker + 1; j < end; ++j) {
            const Token& token = tokens_[j];
            if (token.what == What::row && hasMarker(token) && j > last) stop = std::min(stop, j);
            const bool group = token.what == What::group && token.kind == kind;
            taken.byHost = taken.byHost || (group && token.document == 0);
            if (stop < end) continue;
            if (token.what == What::enter && awaited == 0) awaited = token.document;
            if (token.what == What::leave && token.document == (source != 0 ? source : awaited)) stop = j;
            if (!group || token.document == 0) continue;
            if (source == 0) source = token.document;
            if (source == token.document) put(taken.slots, token, token.pages);
        }
        taken.any = source != 0 && !taken.byHost;
        for (std::size_t j = 0; j < stop && taken.any; ++j) {
            if (tokens_[j].document == source) say(tokens_[j], taken.words);
        }
        return taken;
    }

    void endSection(std::size_t end) {
        PerKind<Taken> taken;
        brought_.clear();
        const bool hadTitle = words_.title;
        for (const auto& [kind, marker] : wanted_) {
            taken[kind] = take(kind, marker, end);
            if (!taken[kind].any) continue;
            const HeaderWords& words = taken[kind].words;
            bring(words, kind, said_, words_);
            brought_.emplace_back(kind, words);
            for (std::size_t i = depth_; i < outside_.size(); ++i) bring(words, kind, said_, outside_[i]);
        }
        for (const HeaderKind kind : headerKinds) {
            const bool wanted = wanted_.count(kind) != 0;
            const bool isNew = taken[kind].any || (breaks_ && wanted && !taken[kind].byHost);
            Slots given = std::exchange(hosts_[kind], {});
            const bool first = given[3].has_value();
            if (isNew) {
                given = newGroups(kind, taken[kind]);
            } else {
                if (mainOf(given)) main_[kind] = *mainOf(given);
                if (first || mainOf(given)) firstIsMain_[kind] = false;
                const bool showsMain = !wanted_.empty() && words_.title && (breaks_ || !hadTitle);
                if (showsMain && !first && !firstIsMain_[kind]) {
                    given[3] = main_[kind];
                    firstIsMain_[kind] = true;
                }
            }
            if (given[0]) given[1] = given[0];
            for (std::size_t i = 0; i < 4; ++i) {
                if (given[i]) shown_[kind][i] = *given[i];
            }
        }
        std::array<std::u16string, 2> frames;
        for (const HeaderKind kind : headerKinds) {
            frames[static_cast<std::size_t>(kind)] = words_.distance[kind];
            if (words_.border[kind]) frames[static_cast<std::size_t>(kind)] += u'b';
        }
        view_.shows = SectionReader::shows(facing_, words_.title, frames, [&](int footer, int pages) {
            return shown_.values[static_cast<std::size_t>(footer)][static_cast<std::size_t>(pages)];
        });
        sections.push_back(std::exchange(view_, {}));
        said_ = {};
        depth_ = outside_.size();
        wanted_.clear();
        breaks_ = hasContent_ = pageBreak_ = byDocument_ = false;
        continues_.assign(continues_.size(), false);
    }

    Slots newGroups(HeaderKind kind, const Taken& taken) {
        Slots given = taken.slots;
        const std::u16string main = mainOf(given).value_or(u"");
        given[0] = main;
        if (facing_ && !given[2]) given[2] = main;
        const bool ownFirst = taken.words.title || !words_.title;
        if (!ownFirst) given[3] = main;
        if (words_.title && !given[3]) given[3] = u"";
        main_[kind] = main;
        firstIsMain_[kind] = words_.title && !ownFirst;
        return given;
    }

    Choose choose_;
    bool braced_;
    bool facing_ = false;
    std::vector<Token> tokens_;
    std::size_t documents_ = 0;
    unsigned numbers_ = 0;

    // The section that is read.
    SectionReader::Section view_;
    std::vector<HeaderWords> outside_;  // of the open documents
    std::vector<bool> continues_;       // a section that had content where the document began
    std::size_t depth_ = 0;             // documents open all the time since it began
    // What held at the last page break.
    struct Page {
        HeaderWords words;
        std::size_t depth = 0;  // documents open all the time since
        std::size_t sectionDepth = 0;
    };
    Page page_;
    std::vector<std::pair<HeaderKind, HeaderWords>> brought_;  // by the last section's new groups
    HeaderWords words_;                                        // in force
    HeaderWords said_;                                         // by the host since it began
    PerKind<Slots> hosts_;
    std::map<HeaderKind, std::size_t> wanted_;   // by the marker at this place
    std::map<HeaderKind, std::size_t> pending_;  // by markers in a table that has not ended
    bool breaks_ = false;                        // a marker began it
    bool hasContent_ = false;
    bool pageBreak_ = false;  // with nothing behind it
    bool byDocument_ = false;

    // What later sections inherit.
    PerKind<std::array<std::u16string, 4>> shown_;
    PerKind<std::u16string> main_;
    PerKind<bool> firstIsMain_;
};

}  // namespace velmor::test
