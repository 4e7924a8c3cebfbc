#pragma once

#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct CleanCommandOptions {
    std::vector<std::string> inputs;  // at least one; "-": standard input. UTF-8, as all names
    std::string output;               // empty or "-": standard output
    bool merge = false;               // merge mode for one input too; several inputs always use it
    bool exact = false;               // not tolerant
};

// velmor clean: joins several inputs, cleans the document and writes it. Reports
// documents that are not changed and text that joining leaves out.
ExitCode runClean(platform::Services& services, const CleanCommandOptions& options);

}  // namespace velmor::cli
