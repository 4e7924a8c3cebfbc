#pragma once

#include <string>

#include "rtf/edit/TableCollection.h"

namespace velmor {

// Readers may give the first row of a whole text the cell padding of any table style. Where one of the documents brings
// such a style, the first row of each document without one says that it has no padding of its own.
void keepRowPadding(std::u16string& host, TableCollection& tables);

}  // namespace velmor
