#pragma once

#include "check/TemplateFile.h"
#include "check/TemplatePlaces.h"
#include "cli/JsonText.h"
#include "cli/ReportCollector.h"

namespace velmor::cli {

// Adds two members to the data of a report's page.
// "tags": the tags that were evaluated, in the order in which they began, and then those of the template that were not.
// Of each: "handler", "command", "commandValue", "parameters", "name", "parent" and "origin"; if it was evaluated
// "value", "length" and "microseconds"; for an outermost one "line" and "column".
// "spans": [story, begin, end, tag] of each tag of the template's text, the outer before the inner.
void addReportTags(Json& page, platform::Services& services, const TemplateFile& file, const TemplatePlaces& places,
                   const ReportCollector& collector);

}  // namespace velmor::cli
