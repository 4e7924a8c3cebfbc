#pragma once

#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"
#include "rtf/pages/JoinedHeaders.h"

namespace velmor::Module1 {

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
void ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders = true,
                          JoinedPart* poPart = nullptr);

// Whether exact cleaning keeps the marker before the document.
bool continuesSection(std::u16string_view psDocument);

}  // namespace velmor::Module1
