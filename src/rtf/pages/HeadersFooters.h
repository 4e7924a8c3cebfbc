#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"
#include "rtf/edit/TableCollection.h"

namespace velmor::Module1 {

// Outside merge mode. Removes the headers and footers of the lifted documents in poTables, and the section
// words that belong to them, so that they do not leak into the host. At a marker group "{\*\korvanenewheader}"
// or "{\*\korvanenewfooter}" a section begins with the header or footer groups that follow in the same or in
// the next lifted document. The host's own groups stay, except those that a marker at the beginning of their
// section replaces. docs/cleaning.md has the complete rules.
//
// psText is the host's text with the placeholders of the documents; both are edited in place. A group without
// its closing brace stays. Linear, no recursion; nothing changes if no document has a header, a footer, a
// marker or a word of a section. Raises only when memory runs out.
void ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace velmor::Module1
