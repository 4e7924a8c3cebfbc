#pragma once

#include <stdexcept>
#include <string>

namespace velmor::cli {

// The program's exit codes. Scripts rely on the numbers.
enum ExitCode : int {
    exitDone = 0,           // done
    exitUsage = 1,          // the command line is wrong; nothing was done
    exitFile = 2,           // something could not be read or written; no output was made
    exitReported = 3,       // output was made, and errors were reported
    exitInterrupted = 130,  // by a signal; what was made is whole
};

// Ends the command: the message goes to standard error, the code to the caller.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}
    ExitCode code() const noexcept { return code_; }

private:
    ExitCode code_;
};

}  // namespace velmor::cli
