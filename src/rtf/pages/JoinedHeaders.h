#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rtf/edit/TextEdits.h"
#include "rtf/pages/HeaderWords.h"

namespace velmor {

// Separates the headers and footers of joined documents: a page shows what it would show if its document were
// alone. A section inherits the groups that it does not give, by kind of page, so a document gets empty groups
// for kinds that only previous documents give. \facingp holds for the whole text: if one document has it, those
// without it show their ordinary header on left pages too.
//
// One pass over the text, no recursion. The text between documents must reset the words of sections (\titlepg,
// \headery, ...).
class JoinedHeaders {
public:
    // The begin of a section at a join: after the marker.
    struct Join {
        std::size_t begin;  // of the marker
        std::size_t behind;
        bool document;  // one follows; otherwise headers and footers continue
    };

    // `joins` in ascending order. The changes go to `edits`. `tolerant`: \sectd begins each joined document, so
    // that its words hold in it only.
    JoinedHeaders(std::u16string_view text, const std::vector<Join>& joins, bool tolerant, TextEdits& edits);

private:
    static constexpr std::size_t nowhere = std::u16string_view::npos;

    struct Pages {
        bool main = false;  // all pages, or the right ones
        bool left = false;
        bool first = false;

        bool any() const noexcept { return main || left || first; }
    };

    struct OpenGroup {
        std::optional<HeaderName> name;  // absent in an ignorable destination
        std::size_t begin;
        std::size_t depth;
    };

    void findFacingPages();
    void letHostFace(std::size_t host);
    void read(std::size_t host);
    void openGroup(std::size_t index, std::size_t depth);
    void closeGroup(std::size_t index, std::size_t depth);
    void takeWord(std::size_t index);
    void take(HeaderName name, std::size_t begin, std::size_t end);
    void join(const Join& join);
    // `end`: the place for its last words.
    void closeSection(std::size_t end);
    void closeSection(HeaderKind kind);
    void endSilently(std::size_t end);
    void empty(std::size_t place, HeaderName name);

    std::u16string_view text_;
    const std::vector<Join>& joins_;
    bool tolerant_;
    std::vector<bool> facing_;  // by document: left pages have their own
    bool anyFacing_ = false;

    std::size_t document_ = 0;
    std::optional<OpenGroup> open_;
    PerKind<Pages> given_;    // by the current section
    PerKind<Pages> own_;      // by the document, in previous sections
    PerKind<Pages> foreign_;  // given by previous documents and inherited
    PerKind<bool> emptied_;   // the document got an empty group, and has none of its own so far
    std::size_t lastBrace_ = 0;
    std::size_t beginning_ = nowhere;  // of the document, in its first section
    std::size_t title_ = nowhere;      // after the section's \titlepg
    TextEdits& edits_;
};

}  // namespace velmor
