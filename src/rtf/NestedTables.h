#pragma once

#include <string>

#include "rtf/CleanOptions.h"

namespace velmor::Module1 {

// Rewrites the tables of marker pairs that lie in other marker pairs as nested tables, level by
// level. Linear in the text; no recursion on its depth.
void ConvertNestedTables(std::u16string& psText, const CleanOptions& options);

}  // namespace velmor::Module1
