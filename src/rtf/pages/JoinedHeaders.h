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

// Keeps the headers and footers of joined documents apart: a page shows what it would show if its
// document stood alone. A section inherits, by kind of page, what it does not give, so a document gets
// empty groups for what the documents in front of it gave and it does not. \facingp holds for the
// whole text: as soon as one document has it, those without it show their one header on left pages,
// too.
//
// One pass over the text, no recursion. The words of sections (\titlepg, \headery, ...) are expected
// to be reset between documents.
class JoinedHeaders {
public:
    // Where a section begins because of a join: behind the marker.
    struct Join {
        std::size_t begin;  // of the marker
        std::size_t behind;
        bool document;  // one follows; otherwise the text goes on with what it has
    };

    // `joins` in ascending order. The changes go to `edits`.
    // `tolerant`: \sectd begins each joined document, so that what is said of one holds in it alone.
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
    // `end`: where its last words may stand.
    void closeSection(std::size_t end);
    void closeSection(HeaderKind kind);
    void endSilently(std::size_t end);
    void empty(std::size_t place, HeaderName name);

    std::u16string_view text_;
    const std::vector<Join>& joins_;
    bool tolerant_;
    std::vector<bool> facing_;  // by document: left pages are of their own
    bool anyFacing_ = false;

    std::size_t document_ = 0;
    std::optional<OpenGroup> open_;
    PerKind<Pages> given_;    // by the section that is read
    PerKind<Pages> own_;      // by the document, in sections before
    PerKind<Pages> foreign_;  // what documents in front gave and is inherited
    PerKind<bool> emptied_;   // the document was given an empty group, and has none of its own so far
    std::size_t lastBrace_ = 0;
    std::size_t beginning_ = nowhere;  // of the document whose first section this is
    std::size_t title_ = nowhere;      // behind the section's \titlepg
    TextEdits& edits_;
};

}  // namespace velmor
