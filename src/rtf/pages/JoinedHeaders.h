#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HeaderWords.h"
#include "rtf/pages/PageSetup.h"

namespace velmor {

// Who gives a group that a section shows.
enum class HeaderSource : std::uint8_t { nobody, previousDocument, thisDocument, thisSection };
using HeaderSources = std::array<HeaderSource, 4>;  // by pages; the right ones for all

// What a part of a joined text needs to know of the other parts.
struct JoinedPart {
    bool goesOn = false;       // documents precede it: its host only holds its documents
    bool facingPages = false;  // a document of another part has \facingp

    // At the begin of the part; afterwards what the documents before its last one leave to that one.
    PageSetup hostPage;
    PerKind<HeaderSources> shown;
    PerKind<bool> emptied;  // sections show an empty group that separates documents

    bool operator==(const JoinedPart&) const = default;
};

// Separates the headers and footers of joined documents: a page shows what it would show if its document were
// alone. A section inherits the groups that it does not give, by kind of page, so a document gets empty groups
// for kinds that only previous documents give. \facingp holds for the whole text: if one document has it, those
// without it show their ordinary header on left pages too.
//
// One pass over the text, no recursion. The text between documents must reset the words of sections (\titlepg,
// \headery, ...).
class JoinedHeaders {
public:
    // A part of the text that begins with a section: the host, or what follows a marker.
    struct Join {
        std::size_t begin;  // of the marker
        std::size_t after;
        bool document;  // it is one; otherwise headers and footers continue
        bool facing;    // it has \facingp
    };

    // `joins` are in ascending order, the host first. The changes go to `edits`. `tolerant`: \sectd begins each joined
    // document, so that its words hold in it only.
    JoinedHeaders(std::u16string_view text, const std::vector<Join>& joins, bool tolerant, JoinedPart& part,
                  TextEdits& edits);

private:
    using Source = HeaderSource;

    struct OpenGroup {
        std::optional<HeaderName> name;  // absent in an ignorable destination
        std::size_t begin;
        std::size_t depth;
    };

    void letHostFace(std::size_t host);
    void read(std::size_t host);
    void openGroup(std::size_t index, std::size_t depth);
    void closeGroup(std::size_t index, std::size_t depth);
    void takeWord(const ControlWord& word);
    void take(HeaderName name, std::size_t begin, std::size_t end);
    Source& source(HeaderName name) noexcept {
        return shown_[name.kind][static_cast<std::size_t>(ordinary(name.pages))];
    }
    void join(const Join& join);
    // `end`: the place for its last words.
    void closeSection(std::size_t end);
    void closeSection(HeaderKind kind);
    void endSilently(std::size_t end);

    std::u16string_view text_;
    const std::vector<Join>& joins_;
    bool tolerant_;
    std::vector<bool> facing_;  // by document: left pages have their own
    bool anyFacing_ = false;

    std::size_t document_ = 0;
    std::optional<OpenGroup> open_;
    JoinedPart& part_;
    PerKind<HeaderSources> shown_;
    PerKind<bool> emptied_;
    std::size_t lastBrace_ = 0;
    std::size_t beginning_ = nowhere;  // of the document, in its first section
    std::size_t title_ = nowhere;      // after the section's \titlepg
    TextEdits& edits_;
};

}  // namespace velmor
