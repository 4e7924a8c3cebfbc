#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "cli/Failure.h"
#include "platform/SystemServices.h"

namespace velmor::cli {

struct CommandLine {
    std::function<ExitCode(platform::Services&)> run;  // the command with its options
    platform::SystemOptions system;
    bool replays = false;  // nothing of the machine is used: `system` does not count
};

// The arguments are in the locale's encoding (UTF-8 on Windows), the result is in UTF-8.
// Nothing when the command line asked for help or the version, which then has been printed. Throws
// Failure (exitUsage) for a wrong one.
std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace velmor::cli
