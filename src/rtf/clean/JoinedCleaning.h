#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Services.h"
#include "rtf/clean/JoinDocuments.h"
#include "rtf/clean/SpooledTexts.h"
#include "rtf/edit/CleanOptions.h"

namespace velmor {

// How much of a joined text is in memory, and how many threads clean it.
struct JoinLimits {
    std::size_t part = std::size_t{1} << 20;    // units after which a part ends
    std::size_t atOnce = std::size_t{1} << 25;  // units that are cleaned at once
    bool twoThreads = false;                    // a part is cleaned while the next one is merged
};

// Joins documents as they come, and cleans them in merge mode in bounded memory. The result is that of joinDocuments
// and CleanRTFText, except for the identifiers of table markers, which are new on every call; and it may be longer than
// a text.
//
// Memory holds the first document, the merged tables and a few megabytes. The tables grow with different fonts, colours
// and styles, and with every list, since documents share no lists. The spools get each document twice.
//
// Documents are cleaned in parts of the joined text. Where one of them makes that impossible, all are cleaned at once,
// which is limited to JoinLimits::atOnce. That is one which itself holds documents, section markers, page breaks
// between joined documents, binary data or a single table marker; one with a table row that does not end; text with
// braces around the first document; in exact cleaning a brace after a backslash; and bytes in another code page in a
// font that only later documents define. Documents that were cleaned by themselves hold none of these unless they are
// damaged.
class JoinedCleaning {
public:
    // `letters` and `cleaned` are empty; after an error of theirs the object is of no use.
    JoinedCleaning(const CleanOptions& options, const platform::Services& services, Spool& letters, Spool& cleaned,
                   const JoinLimits& limits = {});

    // Adds a document that was made for the same kind of cleaning, exact or tolerant. Returns how many characters
    // around it are left out: none of the first document's, white space and NULs aside. Throws Error 7 when all
    // documents must be cleaned at once and are too large; the document is then not added.
    std::size_t add(JoinableDocument document);

    // Writes the result in pieces, from the begin to the end; nothing when no document was added, and the first
    // document as it is when no other was. To be called once. Throws Error 7 as add(), before it writes anything.
    void finish(const std::function<void(std::u16string_view)>& write);

private:
    using Write = std::function<void(std::u16string_view)>;

    void checkSize(const JoinedFacts& facts) const;
    void writeJoined(const Write& write);
    bool cleanInParts(const Write& write);
    void cleanAtOnce(const Write& write);

    CleanOptions options_;
    const platform::Services& services_;
    SpooledTexts letters_;
    SpooledTexts cleaned_;
    JoinLimits limits_;
    JoinedFacts facts_;
    std::u16string first_;      // the first document, with the text around it
    std::size_t firstEnd_ = 0;  // the place of its last brace
};

}  // namespace velmor
