#pragma once

#include <string>

#include "rtf/edit/CleanOptions.h"

namespace velmor::Module1 {

// Keeps table rows whole: "\trkeep" is put in front of each "\row" whose row, from its "\trowd" on,
// has none. The next row begins behind that "\row"; one without it ends the walk. Tolerant: tables in
// marker pairs are apart from the rows around them. One pass.
void ProtectTableRows(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
