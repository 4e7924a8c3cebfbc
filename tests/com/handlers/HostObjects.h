#pragma once

#include "automation/Object.h"

namespace testhandlers {

// A host's own property collection, "VelmorTest.Collection": the members that a tag needs, and a
// note in the journal for each.
velmor::automation::ObjectRef makeCollection();

// A host's database object, "VelmorTest.Database": hands out items and takes events, with a note in
// the journal for each.
velmor::automation::ObjectRef makeDatabase();

}  // namespace testhandlers
