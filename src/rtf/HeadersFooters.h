#pragma once

#include <string>

#include "rtf/CleanOptions.h"
#include "rtf/TableCollection.h"

namespace velmor::Module1 {

// Outside merge mode: keeps headers and footers of lifted documents from leaking into the host, and
// starts new ones at the marker groups. psText is the host's text, with placeholders where the
// documents of poTables lie; both are edited in place.
void ApplyHeadersFooters(std::u16string& psText, TableCollection& poTables, const CleanOptions& options);

}  // namespace velmor::Module1
