#pragma once

#include <vector>

#include "check/TemplatePlaces.h"
#include "core/TraceCollector.h"
#include "velmor/velmor.h"

namespace velmor::api {

// What was collected during an evaluation; the places are those of its template.
std::vector<TracedTag> tracedTags(const TraceCollector& trace, const TemplatePlaces& places);

}  // namespace velmor::api
