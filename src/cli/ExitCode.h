#pragma once

namespace velmor::cli {

// The program's exit codes. Scripts rely on the numbers.
enum ExitCode : int {
    exitDone = 0,      // done
    exitUsage = 1,     // the command line is wrong; nothing was done
    exitFile = 2,      // something could not be read or written; no output was made
    exitReported = 3,  // output was made, and errors were reported
};

}  // namespace velmor::cli
