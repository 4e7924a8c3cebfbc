#pragma once

#include <string>
#include <vector>

#include "cli/JsonText.h"
#include "rtf/merge/MergeReport.h"

namespace velmor::cli {

// What one run of cleaning merged, for a report. `inputs`: the files that were joined, or the one that was cleaned.
Json jsonOf(const MergeReport& report, const std::vector<std::string>& inputs);

}  // namespace velmor::cli
