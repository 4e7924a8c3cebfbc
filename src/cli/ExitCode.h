#pragma once

namespace velmor::cli {

// What the program tells its caller. Scripts rely on the numbers.
enum ExitCode : int {
    exitDone = 0,      // all went well
    exitUsage = 1,     // the command line is wrong; nothing was done
    exitFile = 2,      // something could not be read or written; no output was made
    exitReported = 3,  // the output is there, and what went wrong on the way was reported
};

}  // namespace velmor::cli
