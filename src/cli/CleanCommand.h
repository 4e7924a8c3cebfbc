#pragma once

#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct CleanCommandOptions {
    std::vector<std::string> inputs;  // at least one; "-": standard input. UTF-8, as all names
    std::string output;               // empty or "-": standard output
    bool merge = false;               // clean one input in merge mode, too; several always are
    bool exact = false;               // not tolerant
};

// velmor clean: joins several inputs, cleans the document and writes it. Reports what cleaning leaves
// as it is and what joining leaves out.
ExitCode runClean(platform::Services& services, const CleanCommandOptions& options);

}  // namespace velmor::cli
