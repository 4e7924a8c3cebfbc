#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
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

namespace Module1 {

// Precedes each document that was joined to the previous one.
inline constexpr std::u16string_view mergePageBreakMarker = u"{\\*\\korvanemergepagebreak}";

// Replaces each marker of a joined document by a section break with the page of that document: of its first
// "\sectd", up to the next "\sect" or "\page", or else of the document's words up to the next marker. An absent
// value is 0.
//
// A marker whose document has "\sect" but no "\page" after its "\sectd" stays. One in a table row becomes
// "\par". Tolerant: every other marker is replaced; absent values are RTF's defaults; "\sectd" and
// "\pard\plain" end the section, list, table and formatting of the text before the break; the document's first
// "\sectd" is removed, as it would reset the page; and the page is written where it holds to the section's end,
// after the closing braces around the marker.
//
// Each document keeps its headers and footers (see JoinedHeaders). The section's words about them ("\titlepg",
// for example) continue in a document that does not begin with "\sectd", unless tolerant. `pbHeaders` false: no
// document has any. One pass for the pages, one for headers and footers. `poPart` goes from one part of a joined text
// to the next: each part has a host, and its last document is the first one of the next part, or an empty one.
void ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders, JoinedPart& poPart);

// Whether exact cleaning keeps the marker before the document.
bool continuesSection(std::u16string_view psDocument);

}  // namespace Module1
}  // namespace velmor
