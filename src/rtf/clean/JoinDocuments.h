#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/edit/TableCollection.h"
#include "rtf/merge/MergeTables.h"
#include "rtf/read/GroupSet.h"
#include "rtf/read/RtfReader.h"

namespace velmor {

// Inserts the version 1, which cleaning looks for, into a document without a version: "{\rtf\ansi"
// means "{\rtf1\ansi". Throws Error 5 when the text contains no RTF document;
// `name` is for messages.
void requireDocument(std::u16string& text, bool addVersion, const std::string& name);

// Joins documents for cleaning in merge mode: each further document is inserted before the closing
// brace of the first, preceded by the marker group of a merge page break. Linear in the texts. The first document keeps
// the characters around it; those around a further one are left out.
//
// The texts have passed requireDocument; `names` are for messages. Throws Error 5 for a document
// without a closing brace, and 7 for a joined text that exceeds the length of a text.
std::u16string joinDocuments(std::vector<std::u16string> texts, const std::vector<std::string>& names);

// What cleaning the parts of a joined text needs to know of its documents.
struct JoinedFacts {
    // Those of documents that follow. The obstacle of the first one stays.
    void add(const JoinedFacts& other);

    // Whether cleaning applies to the joined text.
    bool isCleanable() const noexcept { return isVersionOne && !holdsTag; }
    bool hasHeaders() const noexcept { return groups.has(Group::header) || groups.has(Group::footer); }
    // A mark for a TableCollection of the joined text.
    std::optional<char16_t> unusedMark() const { return TableCollection::unusedMark(highUnits); }

    std::size_t documents = 0;
    std::size_t size = 0;  // of the joined text
    bool isVersionOne = false;
    bool holdsTag = false;
    bool hasFacingPages = false;
    GroupSet groups;
    LiftedDocuments lifted;
    std::u16string obstacle;   // why the documents cannot be cleaned in parts, as a sentence; empty if they can
    std::u16string highUnits;  // those that may not be a mark, each once
};

// A document that is to be joined, with what joining needs to know of it. To make one is most of the work of adding it,
// and any thread may do that.
struct JoinableDocument {
    // Throws Error 5 for a text without RTF document or without its closing brace; the name is for messages. Linear.
    JoinableDocument(std::u16string documentText, bool tolerant, std::string documentName);

    std::u16string_view document() const noexcept { return range.of(text); }
    // As the first document, with the text around it. Linear.
    JoinedFacts factsOfFirst(bool tolerant) const;

    std::string name;
    std::u16string text;       // with what is around the document
    TextRange range;           // of the document, with its braces
    JoinedFacts facts;         // as a document that is not the first one
    std::size_t countOutside;  // the characters around the document, white space and NULs aside
};

}  // namespace velmor
