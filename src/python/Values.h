#pragma once

#include "python/Text.h"
#include "velmor/velmor.h"

namespace velmor::python {

// Imports what setAll needs. Called once, when the module is imported.
void importValueClasses();

// Sets the entries of a mapping. Raises TypeError for a name or a value of another type, ValueError for a value that
// no property can hold, and for mappings and lists nested deeper than 100 levels.
void setAll(Properties& properties, py::handle mapping);

}  // namespace velmor::python
