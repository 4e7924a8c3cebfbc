#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HeaderWords.h"
#include "rtf/pages/HoldingPlace.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// A place in the texts of a run (0-based), with its context.
struct FlowPlace {
    static constexpr std::uint32_t host = 0;

    std::uint32_t text = host;  // 1 and up: a lifted document's index + 1
    std::size_t begin = 0;
    std::size_t end = 0;
    bool body = true;  // not in a header, a note, a picture, a field, ...
    bool inTable = false;
    std::size_t depth = 0;  // of the groups around it

    HoldingPlace holding() const noexcept { return {begin, depth, text}; }
};

// The groups of one kind in a new section.
struct NewGroups {
    bool wanted = false;
    bool byHost = false;        // the host's own follow and stay in place, so no others are wanted
    bool searching = false;     // later groups may still be taken
    std::uint32_t awaited = 0;  // the document with which the search ends: the source, or the next one after the marker
    std::uint32_t source = 0;   // the document whose groups are taken
    std::array<std::u16string_view, 4> groups{};  // by their pages; of several the first one counts
    HeaderWords words{};

    std::u16string_view given(HeaderPages pages) const noexcept { return groups[static_cast<std::size_t>(pages)]; }
};

// The sections of the whole document, as the header and footer stage reads them, and the stage's changes. Given
// views must stay valid until the changes are made.
class HeaderSections {
public:
    // `braced`: lifted documents return between braces, which restore the section's words.
    explicit HeaderSections(bool braced) noexcept : braced_(braced) {}

    using Edits = std::map<std::uint32_t, TextEdits>;  // by text

    // ---- The content in reading order. The place of a word includes the blank that ends it.

    void enterDocument(std::uint32_t text) {
        documents_.push_back({text, {}, braced_ && section_.hasContent});
        for (NewGroups& groups : newGroups()) {
            if (groups.awaited == 0) groups.awaited = text;
        }
    }

    void leaveDocument() {
        const std::uint32_t left = documents_.back().text;
        documents_.pop_back();
        for (NewGroups& groups : newGroups()) {
            if (groups.awaited == left) groups.searching = false;
        }
    }

    // The place is after it; also called for a document's end.
    void leaveGroup(const FlowPlace& place) {
        if (!braced_) return;
        for (; !saved_.empty() && saved_.back().depth > place.depth; saved_.pop_back()) words_ = saved_.back().words;
        if (lastPage_) lastPage_->holding.leave(place.holding());
        if (section_.start) section_.holding.leave(place.holding());
    }

    void content(const FlowPlace& place) {
        paragraphEnd(place);
        section_.hasContent = true;
        lastPage_.reset();
    }

    // Also called where nothing else of the host follows but its last brace.
    void paragraphEnd(const FlowPlace& place) {
        if (!pending_ || place.inTable || !place.body) return;
        const Start start = *std::exchange(pending_, std::nullopt);
        closeSection();  // its text here precedes the new one
        FlowPlace before = place;
        before.end = before.begin;
        begin(start, before, place.holding());
    }

    void pageBreak(const FlowPlace& place) {
        if (dropsBreak(place)) return;
        section_.hasContent = section_.hasPage = true;
        if (!place.inTable) lastPage_ = PageBreak{place, false, place.holding(), section_.holding, words_.inForce};
    }

    void sectionBreak(const FlowPlace& place) {
        if (dropsBreak(place)) return;
        closeSection();
        beginSection({.byDocument = place.text != FlowPlace::host});
    }

    void sectionDefaults(const FlowPlace& place) {
        lastPage_.reset();
        if (place.text != FlowPlace::host) return documentDefaults(place);
        save(place.depth);
        words_ = {};
        if (section_.start) section_.defaults.push_back(place);
    }

    // `written` is the word as it stands; `place` includes the line of a page border, too.
    void headerWord(Word word, std::u16string_view written, const FlowPlace& place) {
        if (place.text != FlowPlace::host) {
            cut(place);
            if (place.body) changeWords([&](HeaderWords& words) { words[word] = written; });
        } else if (place.body) {
            save(place.depth);
            words_.inForce[word] = words_.said[word] = written;
            lastPage_.reset();
        }
    }

    // Any other word that describes a section.
    void sectionWord(const FlowPlace& place) {
        if (!documents_.empty() && documents_.back().continues) cut(place);
    }

    void facingPages(const FlowPlace& place) {
        if (place.text != FlowPlace::host) return cut(place);
        facing_ = true;
    }

    // A header or footer group with its closing brace.
    void group(HeaderName name, std::u16string_view text, const FlowPlace& place) {
        const bool isOfHost = place.text == FlowPlace::host;
        if (!isOfHost) cut(place);
        if (place.body) isOfHost ? keepHostGroup(name, text, place) : take(name, text);
    }

    void marker(HeaderKind kind, const FlowPlace& place) {
        const bool began = section_.start && !section_.hasContent;
        if (place.body && !pending_ && !began) return beginAtMarker(kind, place);
        cut(place);
        if (place.body) (pending_ ? *pending_ : *section_.start).want(kind);
    }

    // A "{\*\korvanesection" group: a later stage turns the last page break into a section break.
    void description() {
        if (lastPage_) {
            lastPage_->described = true;
        } else if (section_.start && section_.start->breaks && !section_.hasPage) {
            section_.start->asPage = true;
        }
    }

    // False when content would change nothing.
    bool awaitsContent() const noexcept { return pending_ || lastPage_ || !section_.hasContent; }

    // Ends the last section and returns the changes.
    Edits finish() {
        // A page without text and without a new header is removed.
        const auto& start = section_.start;
        if (start && start->breaks && !start->forBreak && !section_.hasContent && !start->takesGroups()) {
            cut(start->place);
            section_.start.reset();
        }
        closeSection();
        return std::move(edits_);
    }

private:
    struct Start {
        PerKind<NewGroups> kinds;
        FlowPlace place;        // its text replaces this
        bool breaks = false;    // a section begins; otherwise the groups join the one that just began
        bool asPage = false;    // written as a page break, which becomes the section's
        bool forBreak = false;  // replaces another break

        void want(HeaderKind kind) { kinds[kind] = {.wanted = true, .searching = true}; }
        bool takesGroups() const noexcept {
            return std::ranges::any_of(kinds.values, [](const auto& kind) { return kind.byHost || kind.source != 0; });
        }
    };

    struct Words {
        HeaderWords inForce;
        HeaderWords said;  // by the host, in the section or after its new start

        void add(const HeaderWords& more) noexcept { inForce.add(more, said); }
    };

    // The state that a group's closing brace restores.
    struct Saved {
        std::size_t depth;
        Words words;
    };

    // The host's own groups of one kind.
    struct HostGroups {
        bool haveMain = false;
        bool haveFirst = false;
        std::vector<FlowPlace> places{};
    };

    struct Section {
        bool hasContent = false;
        bool hasPage = false;     // a page break
        bool byDocument = false;  // a lifted document's break began it
        std::optional<Start> start{};
        PerKind<HostGroups> hostGroups{};
        std::vector<FlowPlace> defaults{};  // each \sectd of the host that follows the start
        HoldingPlace holding{};             // for the words of its start
    };

    // The groups of one kind that later pages show.
    struct Current {
        std::u16string_view main;
        bool firstIsMain = false;  // a first page shows the same
    };

    struct Document {
        std::uint32_t text;
        HeaderWords words;
        bool continues;  // a section that shows something before the document
    };

    struct PageBreak {
        FlowPlace place;
        bool described;
        HoldingPlace holding;         // of the section that it may begin
        HoldingPlace sectionHolding;  // of the one that it ends
        HeaderWords words;
    };

    void cut(const FlowPlace& place) { edits_[place.text].cut(place.begin, place.end); }

    // ---- Groups, whose end restores the words

    // The words in force are about to change, in a group of this depth.
    void save(std::size_t depth) {
        if (braced_ && (saved_.empty() || saved_.back().depth < depth)) saved_.push_back({depth, words_});
    }

    // The new start precedes the host's later words.
    void forgetSaid() {
        words_.said = {};
        for (Saved& saved : saved_) saved.words.said = {};
    }

    // Groups within that of the section's start do not restore the words before the start.
    void holdInGroups(const HeaderWords& carried) {
        const std::size_t depth = section_.holding.depth;
        auto group = std::ranges::lower_bound(saved_, depth, {}, &Saved::depth);
        if (group == saved_.end() || group->depth > depth) {
            const Words& before = group == saved_.end() ? words_ : group->words;
            group = saved_.insert(group, {depth, {before.inForce, {}}});
        }
        while (++group != saved_.end()) group->words.add(carried);
    }

    // ---- Where sections begin

    void beginAtMarker(HeaderKind kind, const FlowPlace& place) {
        Start start;
        start.want(kind);
        if (!section_.hasContent) {
            start.place = place;
            section_.start = start;
            section_.holding = place.holding();
            return forgetSaid();
        }
        if (!place.inTable && !lastPage_) {
            closeSection();
            return begin(start, place, place.holding());
        }
        cut(place);
        if (place.inTable) {
            pending_ = start;
        } else {
            start.asPage = lastPage_->described;
            start.forBreak = true;
            const PageBreak page = *lastPage_;
            closeSectionAt(page);
            begin(start, page.place, page.holding);
        }
    }

    void begin(Start start, const FlowPlace& place, const HoldingPlace& holding) {
        start.place = place;
        start.breaks = true;
        beginSection({.start = start, .holding = holding});
    }

    // The previous section is closed.
    void beginSection(Section next) {
        section_ = std::move(next);
        lastPage_.reset();
        forgetSaid();
        for (Document& document : documents_) document.continues = false;
    }

    // A break directly after the section's own would leave an empty page.
    bool dropsBreak(const FlowPlace& place) {
        paragraphEnd(place);
        if (!section_.start || !section_.start->breaks || section_.hasContent) return false;
        cut(place);
        section_.start->forBreak = true;
        return true;
    }

    // ---- Words

    // Those of the current document.
    template <typename Change>
    void changeWords(Change change) {
        change(documents_.back().words);
        for (NewGroups& groups : newGroups()) {
            if (groups.searching && groups.source == documents_.back().text) change(groups.words);
        }
    }

    void documentDefaults(const FlowPlace& place) {
        changeWords([](HeaderWords& words) { words = {}; });
        // The section keeps its page, margins and columns.
        if (section_.start || documents_.back().continues) return cut(place);
        if (section_.byDocument) {
            save(place.depth);
            words_.inForce[Word::titlepg] = {};
        }
        putWordsAfter(place);
    }

    // The words in force, instead of the blank that ends the \sectd.
    void putWordsAfter(const FlowPlace& defaults) {
        const std::size_t end = defaults.begin + std::u16string_view(u"\\sectd").size();
        std::u16string text = words_.inForce.text();
        if (!text.empty()) edits_[defaults.text].replaceApartVal(std::min(end, defaults.end), defaults.end, text);
    }

    void keepHostGroup(HeaderName name, std::u16string_view text, const FlowPlace& place) {
        paragraphEnd(place);
        lastPage_.reset();
        if (name.pages != HeaderPages::left) current_[name.kind].firstIsMain = false;
        HostGroups& own = section_.hostGroups[name.kind];
        if (name.pages == HeaderPages::first) own.haveFirst = true;
        if (ordinary(name.pages) == HeaderPages::right && !std::exchange(own.haveMain, true)) {
            current_[name.kind].main = text;
        }
        own.places.push_back(place);
        if (!section_.start || !section_.start->kinds[name.kind].wanted) return;
        section_.start->kinds[name.kind] = {.byHost = true};
    }

    void take(HeaderName name, std::u16string_view text) {
        if (target() == nullptr || !target()->kinds[name.kind].searching) return;
        NewGroups& groups = target()->kinds[name.kind];
        const Document& document = documents_.back();
        if (groups.source == 0) {
            groups.source = groups.awaited = document.text;
            groups.words = document.words;
        }
        std::u16string_view& group = groups.groups[static_cast<std::size_t>(name.pages)];
        if (groups.source == document.text && group.empty()) group = text;
    }

    // ---- Writing

    // `left`: the groups in which it ends have ended since. Returns the words of its start.
    HeaderWords closeSection(bool left = false) {
        const HeaderWords carried = section_.start ? writeStart(*section_.start, left) : HeaderWords();
        for (const FlowPlace& defaults : section_.defaults) putWordsAfter(defaults);
        return carried;
    }

    // The section ends at a page break; groups around it may have ended since.
    void closeSectionAt(const PageBreak& page) {
        const bool left = section_.holding.depth < page.sectionHolding.depth;
        section_.holding = page.sectionHolding;
        const HeaderWords inForce = std::exchange(words_.inForce, page.words);
        const HeaderWords carried = closeSection(left);
        words_.inForce = inForce;
        if (!left) words_.add(carried);
    }

    // The section's words in the documents of the taken groups become the section's words.
    HeaderWords carry(const Start& start, bool left) {
        HeaderWords carried;
        for (const HeaderKind kind : headerKinds) {
            const NewGroups& groups = start.kinds[kind];
            if (groups.source != 0) carried.add(groups.words.about(kind), {});
        }
        if (braced_ && !left) holdInGroups(carried);
        words_.add(carried);
        return carried;
    }

    HeaderWords writeStart(const Start& start, bool left) {
        const bool hadTitle = hasTitle();
        const HeaderWords carried = carry(start, left);
        const bool title = hasTitle();
        std::u16string groups;
        for (const HeaderKind kind : headerKinds) {
            const NewGroups& newGroups = start.kinds[kind];
            if (newGroups.source != 0 || (start.breaks && newGroups.wanted)) {
                appendNew(groups, kind, newGroups, title);
            } else if (title && (start.breaks || !hadTitle)) {
                appendFirstOfOther(groups, kind);
            }
        }
        std::u16string words = (start.breaks ? u"\\sbkpage\\pgncont" : u"") + carried.text();
        const HoldingPlace& holding = section_.holding;
        if (holding.moved && !words.empty()) {
            edits_[holding.text].replaceApartVal(holding.at, holding.at, std::exchange(words, {}));
        }
        // Words directly after a generator group would be removed with it.
        std::u16string put = !start.breaks ? u"" : start.asPage ? u"\\page" : u"\\sect";
        put += start.breaks ? words + groups : groups + words;
        edits_[start.place.text].replaceApartVal(start.place.begin, start.place.end, std::move(put));
        return carried;
    }

    // Every page shows the new ones: a section inherits the groups that it does not give.
    void appendNew(std::u16string& text, HeaderKind kind, const NewGroups& groups, bool title) {
        const std::u16string_view main =
            groups.given(groups.given(HeaderPages::all).empty() ? HeaderPages::right : HeaderPages::all);
        if (main.empty()) text += groupFor({kind, HeaderPages::all}, {});
        for (const HeaderPages pages : {HeaderPages::all, HeaderPages::right, HeaderPages::left}) {
            text += groups.given(pages);
        }
        if (facing_ && groups.given(HeaderPages::left).empty()) text += groupFor({kind, HeaderPages::left}, main);
        const bool ownFirst = !groups.words[Word::titlepg].empty() || !title;
        const std::u16string_view first = ownFirst ? groups.given(HeaderPages::first) : main;
        if (title || !first.empty()) text += groupFor({kind, HeaderPages::first}, first);
        current_[kind] = {main, title && !ownFirst};
        for (const FlowPlace& group : section_.hostGroups[kind].places) cut(group);
    }

    // The first page of the new section, and of later ones, shows the ordinary group of the other kind.
    void appendFirstOfOther(std::u16string& text, HeaderKind kind) {
        if (section_.hostGroups[kind].haveFirst || current_[kind].firstIsMain) return;
        text += groupFor({kind, HeaderPages::first}, current_[kind].main);
        current_[kind].firstIsMain = true;
    }

    Start* target() noexcept { return pending_ ? &*pending_ : section_.start ? &*section_.start : nullptr; }
    // Of the target, by kind; none without one.
    std::span<NewGroups> newGroups() noexcept {
        return target() != nullptr ? std::span(target()->kinds.values) : std::span<NewGroups>();
    }
    bool hasTitle() noexcept { return !words_.inForce[Word::titlepg].empty(); }

    Edits edits_;
    Section section_;
    std::optional<Start> pending_;  // inside a table: begins after it
    std::optional<PageBreak> lastPage_;
    std::vector<Document> documents_;  // open ones
    Words words_;
    std::vector<Saved> saved_;  // deeper ones follow
    PerKind<Current> current_;
    bool facing_ = false;
    bool braced_;
};

}  // namespace velmor
