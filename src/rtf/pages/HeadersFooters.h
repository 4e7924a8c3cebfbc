#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor::Module1 {

// Outside merge mode. Takes the headers and footers of lifted documents, and the section words that
// belong to them, out of poTables, so that they do not leak into the host; and gives the marker groups
// "{\*\korvanenewheader}" and "{\*\korvanenewfooter}" their effect: a section begins with the header
// or footer groups that follow in the same or in the next lifted document. The host's own groups stay,
// but for those that a marker at the beginning of their section replaces. The rules in full are in
// docs/cleaning.md.
//
// psText is the host's text, with placeholders where the documents lie; both are edited in place. A
// group without its end stays. Linear, no recursion; nothing changes when no document holds a header, a
// footer, a marker or a word of a section. Raises only when memory runs out.
void ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace velmor::Module1
