#pragma once

#include <string>
#include <vector>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct CleanCommandOptions {
    std::vector<std::string> inputs;  // at least one; "-": standard input. UTF-8, as all names
    std::string output;               // empty or "-": standard output
    bool merge = false;               // one input is cleaned in merge mode, as several always are
    bool exact = false;               // no tolerant cleaning
};

// velmor clean: joins the inputs when there are several, cleans and writes the result. What cleaning
// leaves as it is, and what joining leaves out, is reported.
ExitCode runClean(platform::Services& services, const CleanCommandOptions& options);

}  // namespace velmor::cli
