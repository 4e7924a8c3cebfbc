#pragma once

#include <string>

#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct LogOptions {
    std::string input;  // "-": standard input
    bool json = false;
};

// velmor log: sums up a day's timing log, a line for each stage and handler. Lines that are not log
// lines, and an incomplete last line, are counted and reported.
ExitCode runLog(platform::Services& services, const LogOptions& options);

}  // namespace velmor::cli
