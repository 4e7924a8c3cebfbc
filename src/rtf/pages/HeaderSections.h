#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/pages/HeaderWords.h"
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
};

// Groups of one kind, by their pages; empty if absent. Of several the first one counts.
using PageGroups = std::array<std::u16string_view, 4>;

// The groups of one kind in a new section.
struct NewGroups {
    bool wanted = false;
    bool searching = false;     // later groups may still be taken
    bool byHost = false;        // the host's own follow and stay in place
    std::uint32_t awaited = 0;  // the next document after the marker
    std::uint32_t source = 0;   // the document whose groups are taken
    PageGroups groups{};
    HeaderWords words;

    bool taken() const noexcept { return source != 0 && !byHost; }
};

// The sections of the whole document, as the header and footer stage reads them, and the stage's changes. Given
// views must stay valid until the changes are made.
class HeaderSections {
public:
    // `braced`: lifted documents return between braces, which restore the section's words.
    explicit HeaderSections(bool braced) noexcept : braced_(braced) {}

    struct Change {
        std::uint32_t text;
        std::size_t begin;
        std::size_t end;
        std::u16string put;
        bool cuts;  // even if nothing is inserted
    };

    // ---- The content in reading order. The place of a word includes the blank that ends it.

    void enterDocument(std::uint32_t text);
    void leaveDocument();
    // The place is after it; also called for a document's end.
    void leaveGroup(const FlowPlace& place) {
        if (braced_) leaveBraces(place);
    }
    void content(const FlowPlace& place);
    void paragraphEnd(const FlowPlace& place);
    void pageBreak(const FlowPlace& place);
    void sectionBreak(const FlowPlace& place);
    void sectionDefaults(const FlowPlace& place);
    void distance(HeaderKind kind, std::u16string_view word, const FlowPlace& place);
    void border(HeaderKind kind, const FlowPlace& place);
    // `word` is one of the frame's, with its line.
    void frame(std::size_t index, std::u16string_view word, const FlowPlace& place);
    void titlePage(const FlowPlace& place);
    // Any other word that describes a section.
    void sectionWord(const FlowPlace& place);
    void facingPages(const FlowPlace& place);
    // A header or footer group with its closing brace.
    void group(HeaderName name, std::u16string_view text, const FlowPlace& place);
    void marker(HeaderKind kind, const FlowPlace& place);
    // A "{\*\korvanesection" group: a later stage turns the last page break into a section break.
    void description();
    // Before the host's last brace.
    void hostEnd(const FlowPlace& place);

    // Whether sectionWord would change anything.
    bool awaitsSectionWords() const noexcept { return !documents_.empty() && documents_.back().continues; }
    // False when content would change nothing.
    bool awaitsContent() const noexcept { return pending_ || lastPage_ || !section_.hasContent; }

    // Ends the last section and returns the changes.
    std::vector<Change> finish();

private:
    static std::u16string_view mainOf(const PageGroups& groups) noexcept {
        return groups[0].empty() ? groups[1] : groups[0];
    }

    struct Start {
        PerKind<NewGroups> kinds;
        std::size_t change = 0;  // the change that inserts its text
        bool breaks = false;     // a section begins; otherwise the groups join the one that just began
        bool asPage = false;     // written as a page break, which becomes the section's
        bool forBreak = false;   // replaces another break

        void want(HeaderKind kind);
        bool takesGroups() const noexcept;
    };

    // The place where a section's words hold to its end (see HoldingPlace).
    struct Holding {
        FlowPlace place;
        bool moved = false;  // after a brace

        void leave(const FlowPlace& behind) noexcept {
            if (behind.depth < place.depth) *this = {behind, true};
        }
    };

    // The state that a group's closing brace restores.
    struct Saved {
        std::size_t depth;
        HeaderWords words, said;  // as in Section
    };

    struct Section {
        HeaderWords words;            // in force
        HeaderWords said;             // by the host, in it or after its new start
        PerKind<PageGroups> given{};  // by the host
        bool hasContent = false;
        bool hasPage = false;     // a page break
        bool byDocument = false;  // a lifted document's break began it
        std::optional<Start> start;
        PerKind<std::vector<std::pair<std::size_t, std::size_t>>> hostGroups;
        std::vector<std::size_t> defaults;  // changes after a \sectd of the host that follows the start
        Holding holding;                    // for the words of its start
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
        Holding holding;         // of the section that it may begin
        Holding sectionHolding;  // of the one that it ends
        HeaderWords words;
    };

    // Returns its index; its text may be set later.
    std::size_t change(std::uint32_t text, std::size_t begin, std::size_t end, bool cuts = true);
    std::size_t cut(const FlowPlace& place) { return change(place.text, place.begin, place.end); }
    void placePending(const FlowPlace& place);
    void begin(Start start, std::size_t change, const Holding& holding);
    void beginSection(Section next);
    // `left`: the groups in which it ends have ended since. Returns the words of its start.
    HeaderWords closeSection(bool left = false);
    void closeSectionAt(const PageBreak& page);
    void leaveBraces(const FlowPlace& place);
    void save(std::size_t depth);
    void forgetSaid();
    HeaderWords& wordsOf(const FlowPlace& place);
    template <typename Set>
    void tellTakers(const FlowPlace& place, Set set);
    template <typename Set>
    void setWord(const FlowPlace& place, Set set);
    void take(HeaderName name, std::u16string_view text);
    void keepHostGroup(HeaderName name, std::u16string_view text, const FlowPlace& place);
    Start* target() noexcept { return pending_ ? &*pending_ : section_.start ? &*section_.start : nullptr; }
    bool justBegan() const noexcept;
    void holdInGroups(const HeaderWords& carried);
    static void add(const HeaderWords& carried, const HeaderWords& said, HeaderWords& words);
    HeaderWords carry(const Start& start, bool left);
    HeaderWords writeStart(const Start& start, bool left);
    void appendNew(std::u16string& text, HeaderKind kind, const NewGroups& groups, bool title);
    void appendFirstOfOther(std::u16string& text, HeaderKind kind);

    std::vector<Change> changes_;
    Section section_;
    std::optional<Start> pending_;  // inside a table: begins after it
    std::optional<PageBreak> lastPage_;
    std::vector<Document> documents_;  // open ones
    std::vector<Saved> saved_;         // deeper ones follow
    PerKind<Current> current_;
    bool facing_ = false;
    bool braced_;
};

}  // namespace velmor
