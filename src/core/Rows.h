#pragma once

#include "core/BuiltInCommands.h"

namespace velmor {

class kvTag;

// Answers a tag of the handler "ROWS", which needs no registration; a registered handler of that name takes its place.
// It repeats a template for each entry of a list: a property's child properties.
//
//     <KV:ROWS>LIST=Lines:ROW=line.rtf:</KV>
//     <KV:ROWS>LIST=Names:TEXT=<KV:TAG>PROPERTY:Value:</KV>:BETWEEN=, :</KV>
//
// Meanwhile the properties of an entry take the place of the template's of the same names. An entry without
// properties is the property "Value". "Index" (from 1), "Count", "First" and "Last" are set for each, unless the entry
// has them. Afterwards the template's properties are as before.
//
// A document as ROW is repeated within itself: its tables once, its text for each entry. One of nothing but a table
// gives one table. In a document TEXT is RTF.
//
// Raises 5 for an unknown command, a property that is no list, or a host's own collection. Linear in template,
// entries and result.
CommandAnswer repeatRows(kvTag& tag);

}  // namespace velmor
