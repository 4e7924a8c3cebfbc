#pragma once

#include <stdexcept>
#include <string>

#include "cli/ExitCode.h"

namespace velmor::cli {

// Ends the command: the message goes to standard error, the code to the caller.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode code() const noexcept { return code_; }

private:
    ExitCode code_;
};

}  // namespace velmor::cli
