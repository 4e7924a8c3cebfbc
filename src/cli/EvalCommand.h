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
    bool exact = false;                      // not tolerant, whatever the properties are
};

// velmor eval: evaluates a template and writes the result. Sets the property "kvTag.RTF Tolerant" when it
// is absent. When "Path" is absent, included files are searched in the template's folder (for standard
// input, in the current folder). Reports the entries of the error log. All options are UTF-8.
ExitCode runEval(platform::Services& services, const EvalOptions& options);

}  // namespace velmor::cli
