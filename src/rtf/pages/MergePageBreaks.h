#pragma once

#include <string>
#include <string_view>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Stands in front of each document that was joined to the one before it.
inline constexpr std::u16string_view mergePageBreakMarker = u"{\\*\\korvanemergepagebreak}";

// Replaces each marker of a joined document by a section break with the page of that document: of its
// first "\sectd", up to the next "\sect" or "\page", or else of the document's own words up to the
// next marker. Where no word says, 0 stands.
//
// A marker whose document has "\sect" but no "\page" behind its "\sectd" stays. One in a table row
// becomes "\par". Tolerant: every other marker is replaced; absent values are those that RTF sets for a
// document; "\sectd" and "\pard\plain" keep the section, list, table and formatting in which the text
// before the break ended from the document, whose own first "\sectd" goes, as it would undo the page; and
// the page stands where it holds to the section's end, behind the closing braces around the marker.
//
// Each document keeps its headers and footers (see JoinedHeaders). How the section in front shows them
// ("\titlepg", say) goes on in a document that does not begin with "\sectd", unless tolerant.
// `pbHeaders` false: no document has any, which saves looking. One pass for the pages, one for these.
void ApplyMergePageBreaks(std::u16string& psText, const CleanOptions& options, bool pbHeaders = true);

}  // namespace velmor::Module1
