#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/Documents.h"
#include "cli/ExitCode.h"
#include "platform/Services.h"

namespace velmor::cli {

struct EvalOptions {
    std::string input;   // empty or "-": standard input
    std::string output;  // empty or "-": standard output
    EncodingChoice encoding = EncodingChoice::automatic;
    std::string propertyFile;                // in the text form of a property collection; empty: none
    std::string passwordFile;                // of the property file; empty: none
    std::vector<std::string> properties;     // "name=value": texts, which replace those of the file
    std::optional<std::string> includePath;  // the property "Path", which replaces either
    bool exact = false;                      // not tolerant, whatever the properties say
};

// velmor eval: evaluates a template and writes the result. Without the property "Path", included files
// are looked for in the template's folder (for standard input, in the current one). Without the property
// "kvTag.RTF Tolerant" it is tolerant. Reports the entries of the error log. All options are UTF-8.
ExitCode runEval(platform::Services& services, const EvalOptions& options);

}  // namespace velmor::cli
