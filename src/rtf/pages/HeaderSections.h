#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
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

    using Edits = std::map<std::uint32_t, TextEdits>;  // by text

    // ---- The content in reading order. The place of a word includes the blank that ends it.

    void enterDocument(std::uint32_t text);
    void leaveDocument();
    // The place is after it; also called for a document's end.
    void leaveGroup(const FlowPlace& place) {
        if (braced_) leaveBraces(place);
    }
    void content(const FlowPlace& place);
    // Also called where nothing else of the host follows but its last brace.
    void paragraphEnd(const FlowPlace& place);
    void pageBreak(const FlowPlace& place);
    void sectionBreak(const FlowPlace& place);
    void sectionDefaults(const FlowPlace& place);
    // `written` is the word as it stands; `place` includes the line of a page border, too.
    void headerWord(Word word, std::u16string_view written, const FlowPlace& place);
    // Any other word that describes a section.
    void sectionWord(const FlowPlace& place);
    void facingPages(const FlowPlace& place);
    // A header or footer group with its closing brace.
    void group(HeaderName name, std::u16string_view text, const FlowPlace& place);
    void marker(HeaderKind kind, const FlowPlace& place);
    // A "{\*\korvanesection" group: a later stage turns the last page break into a section break.
    void description();
    // Whether sectionWord would change anything.
    bool awaitsSectionWords() const noexcept { return !documents_.empty() && documents_.back().continues; }
    // False when content would change nothing.
    bool awaitsContent() const noexcept { return pending_ || lastPage_ || !section_.hasContent; }

    // Ends the last section and returns the changes.
    Edits finish();

private:
    static std::u16string_view mainOf(const PageGroups& groups) noexcept {
        return groups[0].empty() ? groups[1] : groups[0];
    }

    struct Start {
        PerKind<NewGroups> kinds;
        FlowPlace place;        // its text replaces this
        bool breaks = false;    // a section begins; otherwise the groups join the one that just began
        bool asPage = false;    // written as a page break, which becomes the section's
        bool forBreak = false;  // replaces another break

        void want(HeaderKind kind);
        bool takesGroups() const noexcept;
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
        PerKind<std::vector<FlowPlace>> hostGroups;
        std::vector<FlowPlace> defaults;  // each \sectd of the host that follows the start
        HoldingPlace holding;             // for the words of its start
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
    void putWordsAfter(const FlowPlace& defaults);
    void beginAtMarker(HeaderKind kind, const FlowPlace& place);
    void begin(Start start, const FlowPlace& place, const HoldingPlace& holding);
    void beginSection(Section next);
    // `left`: the groups in which it ends have ended since. Returns the words of its start.
    HeaderWords closeSection(bool left = false);
    void closeSectionAt(const PageBreak& page);
    void leaveBraces(const FlowPlace& place);
    void save(std::size_t depth);
    void forgetSaid();
    bool dropsBreak(const FlowPlace& place);
    void documentDefaults(const FlowPlace& place);
    template <typename Set>
    void tellTakers(const FlowPlace& place, Set set);
    void take(HeaderName name, std::u16string_view text);
    void keepHostGroup(HeaderName name, std::u16string_view text, const FlowPlace& place);
    Start* target() noexcept { return pending_ ? &*pending_ : section_.start ? &*section_.start : nullptr; }
    bool justBegan() const noexcept;
    bool hasTitle() noexcept { return !section_.words[Word::titlepg].empty(); }
    void holdInGroups(const HeaderWords& carried);
    HeaderWords carry(const Start& start, bool left);
    HeaderWords writeStart(const Start& start, bool left);
    void appendNew(std::u16string& text, HeaderKind kind, const NewGroups& groups, bool title);
    void appendFirstOfOther(std::u16string& text, HeaderKind kind);

    Edits edits_;
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
