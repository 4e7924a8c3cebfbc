#pragma once

#include <string>
#include <vector>

namespace velmor::cli {

// The whole program behind main: reads the command line (UTF-8, without the program's name), runs
// the command and gives the exit code. No exception leaves it.
int runProgram(const std::vector<std::string>& arguments);

}  // namespace velmor::cli
