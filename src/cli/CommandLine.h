#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/CleanCommand.h"
#include "cli/EvalCommand.h"
#include "cli/HandlersCommand.h"
#include "cli/LogCommand.h"
#include "cli/PropsCommand.h"
#include "cli/TagsCommand.h"
#include "platform/SystemServices.h"

namespace velmor::cli {

using Command = std::variant<EvalOptions, CleanCommandOptions, TagsOptions, PropsOptions, HandlersOptions, LogOptions>;

struct CommandLine {
    Command command;
    platform::SystemOptions system;
};

// The arguments are in the locale's encoding (UTF-8 on Windows), the result is in UTF-8.
// Nothing when the command line asked for help or the version, which then has been printed. Throws
// Failure (exitUsage) for a wrong one.
std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace velmor::cli
