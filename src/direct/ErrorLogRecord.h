#pragma once

#include "automation/Object.h"

namespace velmor {

class privProperties;

// One LogEvent of the database for each entry that the log holds now, in order. Raises what the
// database raises.
void recordErrorLog(const privProperties& log, automation::Object& database);

}  // namespace velmor
